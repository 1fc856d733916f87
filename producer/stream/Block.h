#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "gev/GvspHeader.h"
#include "gev/GvspLeader.h"
#include "gev/GvspTrailer.h"

namespace producer {

using StreamClock = std::chrono::steady_clock;

/// Where the data of one block go.
struct BLOCK_MEMORY {
    std::span<std::byte> Memory;  ///< empty when there is none
    void* Owner = nullptr;        ///< the sink's business; null without memory
    bool IsThrough = false;       ///< without memory: no further block is wanted
};

/// A block that nothing more is waited for.
struct FINISHED_BLOCK {
    BLOCK_MEMORY Memory;
    std::uint64_t BlockID = 0;
    bool HasLeader = false;
    bool HasTrailer = false;
    gev::GVSP_LEADER Leader;
    gev::GVSP_TRAILER Trailer;
    std::uint64_t Filled = 0;          ///< bytes up to the end of the last one that was written
    std::uint64_t DataSize = 0;        ///< bytes that the camera meant to send, as far as that is known
    std::uint64_t PacketsMissing = 0;  ///< leader and trailer count too
    bool IsIncomplete = false;
    bool IsLargerThanMemory = false;  ///< what didn't fit was left out
};

/// What a packet did to its block.
enum class PACKET_EFFECT { Placed, Duplicate, Refused };

/// Packets of a block that were passed over, and what was done for them.
struct PACKET_GAP {
    std::uint32_t First = 0;
    std::uint32_t Last = 0;
    std::uint64_t Noticed = 0;    ///< number of the stream's packet that showed the gap
    StreamClock::time_point Due;  ///< when it is asked for, or asked for again
    std::uint32_t Asks = 0;
    bool IsProbe = false;    ///< the camera was silent, and may not have sent it yet
    std::uint32_t Next = 0;  ///< where an asking goes on that had more runs than requests; 0 at its start
};

/// One block under way: puts packets to their places and knows which are missing.
///
/// Owned by CReassembly and used again and again; allocates only when its memory is larger than any before. A packet's
/// place follows from its ID alone, as all payload packets but the last are equally long.
class CBlock {
public:
    static constexpr std::size_t kMostGaps = 512;
    static constexpr std::size_t kLeastPayload = 256;  ///< bytes of a full packet, under which blocks are cut off

    CBlock();

    /// Begins another block. It has no memory yet.
    /// @param nSerial   counts the blocks of a stream in their order, without wrap
    /// @param nPayload  bytes of a full payload packet, as far as that is known before the first
    /// @param bSure     whether blocks of that size were complete already, so that other sizes are wrong
    void Begin(std::uint64_t nBlockID, std::uint64_t nSerial, std::size_t nPayload, bool bSure,
               StreamClock::time_point objNow);
    /// @throws std::bad_alloc  it has none then
    void SetMemory(const BLOCK_MEMORY& objMemory);

    PACKET_EFFECT TakeLeader(const gev::GVSP_LEADER& objLeader);
    PACKET_EFFECT TakePayload(std::uint32_t nPacketID, std::span<const std::byte> arrData);
    PACKET_EFFECT TakeTrailer(std::uint32_t nPacketID, const gev::GVSP_TRAILER& objTrailer);
    /// The whole block in one packet.
    PACKET_EFFECT TakeAllIn(const gev::GVSP_LEADER& objLeader, const gev::GVSP_TRAILER& objTrailer,
                            std::span<const std::byte> arrData);
    /// The camera won't send this packet any more.
    /// @param nPredictedTrailerID  0 when nothing is predicted
    /// @return Placed if it was still waited for
    PACKET_EFFECT TakeUnavailable(std::uint32_t nPacketID, std::uint32_t nPredictedTrailerID);
    /// The camera itself says that something is wrong with the block.
    void SetFlawed() { m_bFlawed = true; }

    /// Notices the packets between the highest so far and this one, as far as they weren't noticed with the end.
    void PassOver(std::uint32_t nPacketID, std::uint64_t nClock, StreamClock::time_point objDue);
    /// Notices the end of the block: what is known to belong to it and hasn't been passed over.
    /// @param nLast   ID of the trailer, as far as known
    /// @param bProbe  the camera may not have sent it yet
    void NoticeTail(std::uint32_t nLast, bool bProbe, std::uint64_t nClock, StreamClock::time_point objDue);

    /// Whether the packet has come or will never come.
    [[nodiscard]] bool IsSettled(std::uint32_t nPacketID) const;
    /// Whether every packet has come or will never come.
    [[nodiscard]] bool IsSettled() const { return m_bTrailerSettled && m_nSettled >= GetTracked(m_nTrailerID); }

    [[nodiscard]] FINISHED_BLOCK GetResult(std::uint32_t nPredictedTrailerID) const;

    /// ID of the trailer: as it came, else as the leader has it, else as predicted. 0 when nothing is known.
    [[nodiscard]] std::uint32_t GetTrailerID(std::uint32_t nPredicted) const;

    [[nodiscard]] std::uint64_t GetBlockID() const { return m_nBlockID; }
    [[nodiscard]] std::uint64_t GetSerial() const { return m_nSerial; }
    [[nodiscard]] bool HasMemory() const { return m_objMemory.Owner != nullptr; }
    [[nodiscard]] const BLOCK_MEMORY& GetMemory() const { return m_objMemory; }
    [[nodiscard]] bool HasTrailer() const { return m_bTrailerSettled; }
    /// As the leader tells it; 0 before it has come.
    [[nodiscard]] std::uint64_t GetTimestamp() const { return m_bLeader ? m_objLeader.Timestamp : 0; }
    [[nodiscard]] std::size_t GetPayload() const { return m_nPayload; }
    /// Whether most packets had another size than was expected.
    [[nodiscard]] bool HasOtherSizes() const { return m_nOtherSizes > m_nSettled; }
    [[nodiscard]] std::uint32_t GetNextID() const { return m_nNextID; }
    /// ID of the first packet of the end that was last noticed as missing.
    [[nodiscard]] std::uint32_t GetTailID() const { return m_nTailID; }
    /// Whether only the trailer can still be of use.
    [[nodiscard]] bool IsMemoryPassed() const { return HasMemory() && m_nNextID >= m_nBits; }
    [[nodiscard]] std::vector<PACKET_GAP>& GetGaps() { return m_vecGap; }

    // What CReassembly notes of the block.
    StreamClock::time_point m_objLastArrival;
    StreamClock::time_point m_objTailAsked;  // when the end was last asked for, or the block began
    bool m_bOvertaken = false;               // a packet of a later block was seen when the end was last looked at
    bool m_bDropped = false;                 // for want of memory
    bool m_bTailNoticed = false;
    bool m_bTailProbed = false;  // a packet of the end was asked for and came: the camera has sent it, and we missed it
    bool m_bDone = false;        // nothing more is waited for

private:
    [[nodiscard]] std::uint32_t GetTracked(std::uint32_t nTrailerID) const;
    void AddGap(const PACKET_GAP& objGap);
    bool SettlePacket(std::uint32_t nPacketID);
    bool HasComeAfterAll(std::uint32_t nPacketID);
    bool FitsPayload(std::uint32_t nPacketID, std::size_t nSize);
    [[nodiscard]] bool CanBeLast(std::uint32_t nPacketID, std::size_t nSize) const;
    [[nodiscard]] bool IsCut(std::uint32_t nPacketID, std::size_t nSize) const;
    void TakeBackShort();
    void TakeBackUnavailable(std::uint32_t nFirst);
    void TakeBackFirst();
    void SizeBits();
    [[nodiscard]] std::uint32_t GetPacketCount() const;
    [[nodiscard]] std::uint64_t GetMeantSize() const;

    BLOCK_MEMORY m_objMemory;
    std::uint64_t m_nBlockID = 0;
    std::uint64_t m_nSerial = 0;
    gev::GVSP_LEADER m_objLeader;
    gev::GVSP_TRAILER m_objTrailer;
    bool m_bLeader = false;
    bool m_bTrailer = false;
    bool m_bTrailerSettled = false;
    bool m_bFlawed = false;
    bool m_bLarger = false;
    bool m_bPayloadFixed = false;
    bool m_bSure = false;              // the payload's size is that of complete blocks
    std::size_t m_nPayload = 0;        // bytes of a full payload packet
    std::size_t m_nExpected = 0;       // the same, as it was expected before the first
    bool m_bLearnt = false;            // the size is of the first packet, which wasn't as expected
    std::uint32_t m_nShortID = 0;      // of a payload packet that wasn't full and so must be the last; 0 for none
    std::size_t m_nShortSize = 0;      // bytes of that one
    std::uint32_t m_nHighestID = 0;    // of the payload packets that came
    std::uint32_t m_nTrailerID = 0;    // good once the trailer is settled
    std::uint32_t m_nNextID = 0;       // behind all that came or was passed over
    std::uint32_t m_nTailID = 0;       // where the end began that was noticed last
    std::uint32_t m_nNoticedID = 0;    // behind all that was noticed with the end
    std::uint32_t m_nSettled = 0;      // packets of the bits below that are set
    std::uint32_t m_nUnavailable = 0;  // of these, those that will never come
    std::uint32_t m_nOtherSizes = 0;   // packets that were refused for their size
    std::uint64_t m_nBytes = 0;        // of data that came
    std::uint64_t m_nFilled = 0;       // end of the furthest byte written
    std::vector<std::uint64_t> m_vecSettled;  // a bit for the leader and each payload packet that the memory can hold
    std::vector<std::uint64_t> m_vecUnavailable;  // likewise; good while m_nUnavailable isn't 0
    std::uint32_t m_nBits = 1;                    // bits in use
    std::vector<PACKET_GAP> m_vecGap;             // reserved for kMostGaps
};

}  // namespace producer
