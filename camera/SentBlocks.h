#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "camera/PacketOutlet.h"
#include "camera/StreamSettings.h"
#include "gev/GvcpStatus.h"
#include "gev/GvspHeader.h"
#include "gev/GvspLeader.h"
#include "gev/GvspTrailer.h"

namespace camera {

using GvspHeaderBuffer = std::array<std::byte, gev::kGvspExtendedHeaderSize>;

/// What a block tells beside its image.
struct BLOCK_FACTS {
    std::uint64_t Timestamp = 0;  ///< ticks, at the start of the exposure
    float ExposureUs = 0;
};

/// The blocks that were sent last, in a ring, so that their packets can be sent again.
///
/// Frames are numbered from 1. A frame's number is its block ID; without extended IDs the IDs begin again at 1 behind
/// 65535. Allocates when a format is set that needs more room than any before, and not for blocks or packets. Not for
/// two threads at once.
class CSentBlocks {
public:
    static constexpr std::size_t kRingSize = std::size_t{32} << 20;  ///< bytes, unless a block is very large
    static constexpr std::size_t kLeastBlocks = 4;
    static constexpr std::size_t kMostBlocks = 1024;

    /// How the next blocks look. Forgets all blocks unless they looked the same.
    /// @param objFormat  of a possible image, and a packet size that has room for data
    void SetFormat(const BLOCK_FORMAT& objFormat);
    /// Forgets all blocks; the next frame is the first.
    void Clear();

    /// Begins the next frame, in the place of the oldest.
    /// @return the frame's image, to be drawn
    std::span<std::byte> Begin();
    /// Ends what Begin began: from now on there are its packets, but none of them counts as sent.
    void Finish(const BLOCK_FACTS& objFacts);
    /// The packets of the last frame before this one have been sent.
    void SetSent(std::uint32_t nPacketID) { GetSlot(m_nFrame).Sent = nPacketID; }

    [[nodiscard]] std::uint64_t GetFrame() const { return m_nFrame; }
    [[nodiscard]] std::uint64_t GetBlockID() const { return GetBlockID(m_nFrame); }
    [[nodiscard]] bool HasExtendedIDs() const { return m_objFormat.ExtendedIDs; }
    /// Packets of each block, leader and trailer included; 0 before a format is set.
    [[nodiscard]] std::uint32_t GetPacketCount() const { return m_nPackets; }

    /// Looks for a block that somebody asks for.
    /// @param nFrame  filled on Success
    /// @return PacketNotYetAvailable for one that is still to come or is being drawn, PacketAndPreviousRemoved for one
    ///         that has gone
    [[nodiscard]] gev::EGvcpStatus Find(std::uint64_t nBlockID, std::uint64_t& nFrame) const;
    /// Whether this packet of a frame that is there was sent.
    [[nodiscard]] bool WasSent(std::uint64_t nFrame, std::uint32_t nPacketID) const {
        return nPacketID < GetSlot(nFrame).Sent;
    }

    /// A packet of a frame that is there.
    /// @param nPacketID   under GetPacketCount()
    /// @param arrHeader   takes its header, which is good as long as this is
    STREAM_PACKET MakePacket(std::uint64_t nFrame, std::uint32_t nPacketID, bool bResent,
                             GvspHeaderBuffer& arrHeader) const;

private:
    struct SLOT {
        std::uint64_t Frame = 0;  // 0: none
        std::uint32_t Sent = 0;   // packets
        std::array<std::byte, gev::kLongestLeaderSize> Leader{};
        std::array<std::byte, gev::kLongestTrailerSize> Trailer{};
    };

    [[nodiscard]] std::uint64_t GetBlockID(std::uint64_t nFrame) const;
    [[nodiscard]] SLOT& GetSlot(std::uint64_t nFrame) { return m_vecSlot[nFrame % m_vecSlot.size()]; }
    [[nodiscard]] const SLOT& GetSlot(std::uint64_t nFrame) const { return m_vecSlot[nFrame % m_vecSlot.size()]; }
    [[nodiscard]] std::span<const std::byte> GetPayload(std::uint64_t nFrame) const;
    [[nodiscard]] gev::EPayloadType GetPayloadType() const;
    void PutChunks(std::span<std::byte> arrChunks, const BLOCK_FACTS& objFacts) const;

    BLOCK_FORMAT m_objFormat;
    std::size_t m_nImage = 0;    // bytes of an image
    std::size_t m_nPayload = 0;  // bytes of a block
    std::size_t m_nPerPacket = 0;
    std::uint32_t m_nPackets = 0;
    std::uint64_t m_nFrame = 0;  // the last
    bool m_bDrawn = false;       // begun, and not finished
    std::vector<SLOT> m_vecSlot{1};
    std::vector<std::byte> m_vecPayload;  // of all slots
};

/// Bytes that stand behind the image of such a block.
std::size_t GetChunkSize(const BLOCK_FORMAT& objFormat);

}  // namespace camera
