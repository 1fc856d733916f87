#pragma once

#include <cstdint>
#include <optional>

#include "producer/stream/Reassembly.h"
#include "producer/stream/StreamReceiver.h"
#include "producer/stream/StreamSocket.h"
#include "producer/wire/ControlChannel.h"

namespace producer {

struct ACQUISITION_SETTINGS {
    REASSEMBLY_SETTINGS Reassembly;
    bool ProbePacketSize = true;                         ///< else the camera's own packet size is kept
    std::size_t ReceiveBuffer = std::size_t{64} << 20U;  ///< bytes asked for
};

/// What an acquisition found out at its start.
struct ACQUISITION_FACTS {
    std::uint32_t PacketSize = 0;  ///< bytes with the headers of IP, UDP and GVSP
    std::uint64_t GrantedBuffer = 0;
    bool IsJoining = false;  ///< the kernel joins packets (UDP GRO)
    bool CanResend = false;  ///< the camera sends packets again
    std::uint16_t Port = 0;
    std::uint64_t TickFrequency = 0;  ///< of the camera, Hz; 0 when it doesn't say
};

/// A stream that runs: the camera's stream channel points to a socket here, and a thread fills buffers from it.
///
/// Owned by the stream's module, which starts the camera's own acquisition after it and stops it before. Any thread may
/// ask; one at a time ends it.
class CAcquisition : private IBlockSink {
public:
    /// Opens the camera's stream channel. Takes at most some five seconds, however the camera answers.
    /// @param objChannel, objSink  must outlive this object. Of the sink, RequestResend isn't called
    /// @throws CProducerError  GC_ERR_ACCESS_DENIED without control of the camera; as CControlChannel and CStreamSocket
    CAcquisition(CControlChannel& objChannel, IBlockSink& objSink, const ACQUISITION_SETTINGS& objSettings);
    /// As Stop(false).
    ~CAcquisition() override;

    /// Begins to fill buffers. Not in the constructor, so that the sink can be told the facts before.
    void Run();
    /// Closes the camera's stream channel, if the camera answers within a second, and ends the thread.
    void Stop(bool bDeliver) noexcept;

    [[nodiscard]] const ACQUISITION_FACTS& GetFacts() const noexcept { return m_objFacts; }
    [[nodiscard]] STREAM_STATISTICS GetStatistics() const;
    /// Packets that the kernel dropped before they were seen.
    [[nodiscard]] std::uint64_t GetDropped() const noexcept { return m_objSocket.GetDropped(); }
    /// Takes effect only where the camera can send packets again.
    void SetResend(bool bResend) noexcept;

private:
    void OpenChannel(bool bProbeSize, Clock::time_point objDeadline);
    void ProbeChannel(bool bSize, Clock::time_point objDeadline);

    BLOCK_MEMORY TakeMemory() override { return m_objSink.TakeMemory(); }
    void ReturnMemory(const BLOCK_MEMORY& objMemory) override { m_objSink.ReturnMemory(objMemory); }
    void DeliverBlock(const FINISHED_BLOCK& objBlock) override { m_objSink.DeliverBlock(objBlock); }
    void RequestResend(std::uint64_t nBlockID, std::uint32_t nFirst, std::uint32_t nLast, bool bExtendedIDs) override;

    CControlChannel& m_objChannel;
    IBlockSink& m_objSink;
    REASSEMBLY_SETTINGS m_objSettings;
    CStreamSocket m_objSocket;
    ACQUISITION_FACTS m_objFacts;
    std::uint16_t m_nRequestID = 0;  // of the receiver's thread
    bool m_bOpen = false;
    std::optional<CStreamReceiver> m_objReceiver;  // last: its thread uses all of the above
};

/// The packet size that FindPacketSize finds, for a stream that doesn't run. Takes at most some five seconds.
/// @throws CProducerError  as CAcquisition; GC_ERR_NOT_AVAILABLE when no test packet comes
std::uint32_t AskPacketSize(CControlChannel& objChannel);

}  // namespace producer
