#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "camera/FaultyOutlet.h"
#include "camera/PacketOutlet.h"
#include "camera/SentBlocks.h"
#include "camera/StreamSettings.h"
#include "camera/TestImage.h"

namespace camera {

/// Something that happened to a frame, as an event tells it.
struct FRAME_EVENT {
    std::size_t Event = 0;  ///< EEvent
    bool ExtendedIDs = false;
    std::uint64_t BlockID = 0;
    std::uint64_t Frame = 0;
    std::uint64_t Timestamp = 0;  ///< ticks
};

/// What a stream tells about itself. Called on the stream's thread.
class IStreamNews {
public:
    virtual ~IStreamNews() = default;
    /// An acquisition of a number of frames has taken them all. Called before the last packet leaves, so that whoever
    /// has the last frame finds the camera ready for a further start.
    virtual void AcquisitionEnded(std::uint32_t nAcquisition) = 0;
    virtual void Happened(const FRAME_EVENT& objEvent) = 0;
    /// Packets of an acquisition's images, sent for the first time or again, found no way out.
    virtual void Unsent(std::uint32_t nAcquisition, const UNSENT_PACKETS& objUnsent) = 0;
};

/// Takes a camera's images and sends them, on a thread of its own.
///
/// The thread lives as long as the object. The operations may be called from any thread and don't wait for it. Once an
/// acquisition has begun, nothing is allocated.
class CImageStream : public IStreaming {
public:
    /// @param objOutlet, objNews  must outlive this
    CImageStream(IPacketOutlet& objOutlet, IStreamNews& objNews);
    ~CImageStream() override;
    CImageStream(const CImageStream&) = delete;
    CImageStream& operator=(const CImageStream&) = delete;

    [[nodiscard]] std::uint16_t GetPort() const override { return m_objOutlet.GetPort(); }
    void Open() override;
    void Close() override;
    void Start(const STREAM_SETTINGS& objSettings) override;
    void Stop() override;
    void Change(const STREAM_SETTINGS& objSettings) override;
    void Trigger(std::size_t nTrigger) override;
    void SendTestPacket(const STREAM_SETTINGS& objSettings) override;
    /// Requests beyond those that find room are dropped: the host asks again.
    void Resend(const gev::RESEND_COMMAND& objCommand) override;
    void SetFaults(const STREAM_FAULTS& objFaults) override;

private:
    static constexpr std::size_t kMostResends = 256;
    static constexpr std::size_t kBatch = 64;  // packets

    /// What other threads want. Of contradicting wishes only the last is left.
    struct ORDERS {
        bool Quit = false;
        bool Close = false;
        bool Open = false;
        bool Stop = false;
        std::optional<STREAM_SETTINGS> Start;
        std::optional<STREAM_SETTINGS> Change;
        std::optional<STREAM_SETTINGS> TestPacket;
        std::optional<STREAM_FAULTS> Faults;
        std::array<std::uint32_t, address::kTriggerCount> Triggers{};
        std::array<gev::RESEND_COMMAND, kMostResends> Resend{};
        std::size_t ResendCount = 0;
    };

    template <class Function>
    void Order(Function funChange);

    void Run();
    void TakeOrders();
    void WaitForOrders(std::optional<TIME> tEnd);
    [[nodiscard]] bool IsAlive() const { return !m_bAborted && !m_bQuit; }
    [[nodiscard]] bool IsWanted() const { return IsAlive() && !m_bStopped && !m_objNext; }

    void Acquire(const STREAM_SETTINGS& objSettings);
    bool Prepare();
    bool AwaitTrigger(std::size_t nTrigger);
    bool AwaitFrame();
    bool WaitUntil(TIME tEnd);
    bool TakeFrame(bool bLast);
    bool SendBlock(bool bLast);
    void Tell(std::size_t nEvent, TIME tWhen);
    void TellUnsent();
    [[nodiscard]] std::uint64_t GetTicks(TIME tWhen) const;

    void SendAgain(const gev::RESEND_COMMAND& objCommand);
    void SendStatus(const gev::RESEND_COMMAND& objCommand, std::uint32_t nPacketID, gev::EGvcpStatus nStatus);
    void FireTestPacket(const STREAM_SETTINGS& objSettings);

    IPacketOutlet& m_objOutlet;
    IStreamNews& m_objNews;

    std::mutex m_mtxOrders;  // guards m_objOrders
    std::condition_variable m_cvOrders;
    ORDERS m_objOrders;
    std::atomic<bool> m_bOrders = false;  // there are some
    std::atomic<bool> m_bHurry = false;   // one of them is to close or to quit

    // All below is of the stream's thread.
    CFaultyOutlet m_objFaulty;
    CSentBlocks m_objBlocks;
    std::vector<CTestImage> m_vecImage;  // by pattern
    STREAM_SETTINGS m_objSettings;       // of the acquisition
    std::optional<STREAM_SETTINGS> m_objNext;
    bool m_bQuit = false;
    bool m_bAborted = false;
    bool m_bStopped = false;
    std::array<std::uint32_t, address::kTriggerCount> m_arrTrigger{};  // that came and weren't used
    TIME m_tFrame{};                                                   // start of the exposure
    std::chrono::nanoseconds m_nExposure{};                            // of the frame
    TIME m_tNextFrame{};
    std::array<STREAM_PACKET, kBatch> m_arrBatch{};
    std::array<GvspHeaderBuffer, kBatch> m_arrHeader{};
    std::array<gev::RESEND_COMMAND, kMostResends> m_arrResend{};  // being served
    std::array<std::byte, 9000> m_arrTestPacket{};

    std::thread m_objThread;  // last, as it uses all others
};

}  // namespace camera
