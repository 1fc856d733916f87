#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "producer/stream/Block.h"
#include "producer/stream/StreamStatistics.h"

namespace producer {

/// Where CReassembly gets memory from, and what it hands over. Called from within its operations, on their thread.
class IBlockSink {
public:
    virtual ~IBlockSink() = default;

    /// Memory for a block that begins; empty, with a null owner, when there is none, or when no more are wanted.
    virtual BLOCK_MEMORY TakeMemory() = 0;
    /// Memory back that nothing is to be delivered in.
    virtual void ReturnMemory(const BLOCK_MEMORY& objMemory) = 0;
    /// A block with its memory, in the order of the blocks.
    virtual void DeliverBlock(const FINISHED_BLOCK& objBlock) = 0;
    /// A wish that the camera sends these packets again.
    virtual void RequestResend(std::uint64_t nBlockID, std::uint32_t nFirst, std::uint32_t nLast,
                               bool bExtendedIDs) = 0;
};

struct REASSEMBLY_SETTINGS {
    std::size_t PacketSize = 1500;  ///< as in the camera's register: with the headers of IP, UDP and GVSP
    bool Resend = true;             ///< ask for missing packets
    /// A packet that comes so many packets late hasn't been lost, and isn't asked for.
    std::uint32_t ReorderWindow = 32;
    /// When fewer packets than that come, a gap is believed after this time.
    std::chrono::microseconds ReorderTime{5'000};
    /// Before the first repeat of a request; each further one waits twice as long.
    std::chrono::microseconds ResendTimeout{10'000};
    std::uint32_t MostResends = 6;  ///< requests for one packet
    /// A block that has no trailer and was silent for so long is asked for its end.
    std::chrono::microseconds TailTime{20'000};
    /// A block that was silent for so long is delivered as it is.
    std::chrono::microseconds BlockTimeout{1'000'000};
};

/// Makes blocks of the packets of one stream, as they come, without sockets, threads or a clock of its own.
///
/// Owned by a receiver and used on its thread alone. Several blocks may be under way at a time; they are delivered in
/// the order of their IDs. A block that can't be completed is delivered as it is, and one of which nothing came is
/// counted. Nothing is allocated for a packet. Packets are hostile: whatever they hold, only memory of the sink is
/// written, each byte at the place that its packet's ID gives it.
class CReassembly {
public:
    static constexpr std::size_t kMostBlocks = 32;        ///< under way; the oldest makes room for a further one
    static constexpr std::uint64_t kRemembered = 64;      ///< blocks behind the newest that late packets are known by
    static constexpr std::uint64_t kLargestLeap = 4'096;  ///< of block IDs; beyond it the camera has begun anew
    static constexpr std::uint32_t kMostRequests = 64;    ///< resend requests at one time
    /// Requests for one packet of a block of which nothing came: most often the camera has left it out.
    static constexpr std::uint32_t kMostAsksOfNothing = 3;
    /// A camera that has answered none of so many requests, nor for so long, is asked once for each packet.
    static constexpr std::uint32_t kMostUnanswered = 32;
    static constexpr std::chrono::milliseconds kLongestUnanswered{250};

    using TimePoint = StreamClock::time_point;

    /// @param objSink  must outlive this object
    CReassembly(IBlockSink& objSink, const REASSEMBLY_SETTINGS& objSettings);

    /// Takes one packet as it came, from the GVSP header on.
    void TakePacket(std::span<const std::byte> arrPacket, TimePoint objNow);

    /// Does what is due: asks for what is missing, gives up what won't come. To be called after the packets that were
    /// there at once, and at GetNextDue.
    /// @param objSeen  every packet that came until then has been taken; nothing is given up, or taken for lost, by a
    ///                 later time, as what is missed may already be there
    void Service(TimePoint objNow, TimePoint objSeen);

    /// When Service is to be called, should no packet come before; nothing while no block is under way.
    [[nodiscard]] std::optional<TimePoint> GetNextDue() const;

    /// Ends every block under way: delivers those of which something came, or hands their memory back.
    void Finish(bool bDeliver);

    /// Packets that are still to come of the block that the last one belongs to; 0 when that isn't known.
    [[nodiscard]] std::size_t GetExpected() const {
        const std::uint32_t nTrailerID = m_pCurrent != nullptr ? m_pCurrent->GetTrailerID(m_nPredictedTrailerID) : 0;
        return nTrailerID != 0 && nTrailerID > m_pCurrent->GetNextID() ? nTrailerID - m_pCurrent->GetNextID() : 0;
    }

    [[nodiscard]] bool IsIdle() const { return m_nUnderWay == 0; }
    [[nodiscard]] const STREAM_STATISTICS& GetStatistics() const { return m_objStatistics; }

    /// From now on; what was asked for stays asked.
    void SetResend(bool bResend) { m_objSettings.Resend = bResend; }

private:
    struct REMEMBERED {
        std::uint64_t Serial = 0;
        std::uint64_t Timestamp = 0;  // of its leader; 0 without one
        bool Dropped = false;         // for want of memory
    };

    CBlock* FindBlock(const gev::GVSP_HEADER& objHeader, std::span<const std::byte> arrBody, TimePoint objNow);
    CBlock* FindOlder(const gev::GVSP_HEADER& objHeader, std::span<const std::byte> arrBody, std::uint64_t nBack,
                      TimePoint objNow);
    CBlock* BeginNewest(const gev::GVSP_HEADER& objHeader, std::uint64_t nLeap, TimePoint objNow);
    CBlock* Restart(const gev::GVSP_HEADER& objHeader, TimePoint objNow);
    CBlock& Insert(std::uint64_t nBlockID, std::uint64_t nSerial, TimePoint objNow);
    [[nodiscard]] bool SetMemory(CBlock& objBlock);
    void LetGoOfHeldBack(const CBlock& objWanting);
    bool Provide(CBlock& objBlock, const gev::GVSP_HEADER& objHeader, std::span<const std::byte> arrBody);
    PACKET_EFFECT Place(CBlock& objBlock, const gev::GVSP_HEADER& objHeader, std::span<const std::byte> arrBody,
                        TimePoint objNow);
    void TakeRefusal(CBlock& objBlock, const gev::GVSP_HEADER& objHeader, TimePoint objNow);
    PACKET_EFFECT TakeStatus(CBlock& objBlock, const gev::GVSP_HEADER& objHeader, std::span<const std::byte> arrBody,
                             bool& bWithData, TimePoint objNow);
    void Postpone(CBlock& objBlock, std::uint32_t nPacketID, TimePoint objNow);
    void Count(PACKET_EFFECT eEffect, const gev::GVSP_HEADER& objHeader);

    /// What one call of Service has to go by.
    struct TURN {
        TimePoint Now;
        TimePoint Seen;
        std::uint32_t Requests = 0;  ///< that were made
    };
    void ServiceBlock(CBlock& objBlock, TURN& objTurn);
    [[nodiscard]] std::uint32_t GetMostAsks(const CBlock& objBlock) const;
    void NoticeTail(CBlock& objBlock, const TURN& objTurn);
    bool ServiceGap(CBlock& objBlock, PACKET_GAP& objGap, TURN& objTurn);
    bool AskFor(const CBlock& objBlock, PACKET_GAP& objGap, std::uint32_t& nRequests);
    [[nodiscard]] bool IsOvertaken(const CBlock& objBlock) const { return objBlock.GetSerial() < m_nNewestSerial; }

    void DeliverDone();
    void DeliverOldest(bool bDeliver);
    void Remember(const REMEMBERED& objRemembered) {
        m_arrRemembered[objRemembered.Serial % kRemembered] = objRemembered;
    }
    [[nodiscard]] const REMEMBERED* FindRemembered(std::uint64_t nSerial) const;

    IBlockSink& m_objSink;
    REASSEMBLY_SETTINGS m_objSettings;
    STREAM_STATISTICS m_objStatistics;

    std::vector<std::unique_ptr<CBlock>> m_vecBlock;  // kMostBlocks of them; the first m_nUnderWay in their order
    std::size_t m_nUnderWay = 0;
    CBlock* m_pCurrent = nullptr;                           // the block of the last packet, if it is still under way
    std::array<REMEMBERED, kRemembered> m_arrRemembered{};  // by serial

    bool m_bStarted = false;
    bool m_bExtendedIDs = false;
    std::uint64_t m_nNewestID = 0;
    std::uint64_t m_nNewestSerial = 0;
    std::uint64_t m_nClock = 0;               // packets that found their place so far
    std::uint32_t m_nLate = 0;                // packets in a row of blocks that aren't under way any more
    std::uint32_t m_nPredictedTrailerID = 0;  // of the last block that was complete
    std::size_t m_nPayload = 0;               // bytes of a full payload packet, as the last complete block had it

    std::uint32_t m_nUnanswered = 0;  // requests since the camera's last answer
    TimePoint m_objUnanswered;        // when the first of them was made
    bool m_bMute = false;             // the camera doesn't seem to answer at all
};

}  // namespace producer
