#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/GvcpStatus.h"

/// GVSP, the stream protocol of GigE Vision: a block (an image, say) is sent as a leader, payload packets and a
/// trailer.
///
/// What holds for every encoder of the Gvsp files: it writes its part to the start of the buffer that it is given and
/// returns what it wrote; an empty span means that the buffer is too small or that the fields can't be said so. Fields
/// that the protocol reserves are zero.
///
/// What holds for every decoder: it reads nothing outside what it is given, and fills its result only if it answers
/// true. Results that are spans point into what was decoded. Reserved fields are not looked at.
namespace gev {

constexpr std::size_t kGvspHeaderSize = 8;
constexpr std::size_t kGvspExtendedHeaderSize = 20;
constexpr std::size_t kIPAndUDPHeaderSize = 28;  ///< what a packet size counts beside the GVSP packet

constexpr std::uint64_t kGvspHighestBlockID = 0xFFFF;        ///< without extended IDs
constexpr std::uint32_t kGvspHighestPacketID = 0x00FF'FFFF;  ///< without extended IDs
constexpr std::uint64_t kGvspTestBlockID = 0;                ///< of a test packet
constexpr std::uint32_t kGvspLeaderPacketID = 0;             ///< payload packets count from 1, the trailer is last

/// What a packet carries. A value that came off the wire may be none of these.
enum class EGvspFormat : std::uint8_t {
    Leader = 1,
    Trailer = 2,
    Payload = 3,
    AllIn = 4,  ///< leader, trailer and data of a small block in one packet
    H264 = 5,
    MultiZone = 6,
    MultiPart = 7,
    GenDC = 8,
};

// Flags of a header with extended IDs.
constexpr std::uint16_t kGvspFlagPacketResend = 0x0001;  ///< sent again, on request
constexpr std::uint16_t kGvspFlagPreviousBlockDropped = 0x0002;
constexpr std::uint16_t kGvspFlagResendRangeError = 0x0004;

struct GVSP_HEADER {
    EGvcpStatus Status = EGvcpStatus::Success;
    EGvspFormat Format = EGvspFormat::Payload;
    bool ExtendedIDs = false;  ///< block IDs of 64 bits and packet IDs of 32, instead of 16 and 24
    std::uint16_t Flags = 0;   ///< with extended IDs only
    std::uint64_t BlockID = 0;
    std::uint32_t PacketID = 0;

    /// Whether it was sent again: without extended IDs a status says so.
    constexpr bool IsResent() const {
        return Status == EGvcpStatus::PacketResend || (Flags & kGvspFlagPacketResend) != 0;
    }
    constexpr std::size_t GetSize() const { return ExtendedIDs ? kGvspExtendedHeaderSize : kGvspHeaderSize; }
};

/// The block ID behind this one: IDs run from 1 and skip 0.
constexpr std::uint64_t NextBlockID(std::uint64_t nBlockID, bool bExtendedIDs) {
    const std::uint64_t nLast = bExtendedIDs ? ~std::uint64_t{0} : kGvspHighestBlockID;
    return nBlockID >= nLast ? 1 : nBlockID + 1;
}

/// Bytes of data in every payload packet of a block but its last.
/// @param nPacketSize  as in the register: with the headers of IP, UDP and GVSP
/// @return 0 when not even the headers fit
constexpr std::size_t GetPayloadPerPacket(std::size_t nPacketSize, bool bExtendedIDs) {
    const std::size_t nHeaders = kIPAndUDPHeaderSize + (bExtendedIDs ? kGvspExtendedHeaderSize : kGvspHeaderSize);
    return nPacketSize > nHeaders ? nPacketSize - nHeaders : 0;
}

/// Empty also when an ID needs more bits than there are.
std::span<std::byte> EncodeGvspHeader(std::span<std::byte> arrBuffer, const GVSP_HEADER& objHeader);

/// @param arrBody  what stands behind the header
/// @return false when the packet is shorter than its header.
bool DecodeGvspHeader(std::span<const std::byte> arrPacket, GVSP_HEADER& objHeader,
                      std::span<const std::byte>& arrBody);

/// A test packet, as long as a stream packet of this size: the device sends it so that the way's limits are found.
/// @param arrBuffer  of at least nPacketSize - 28 bytes
/// @return empty when the buffer is too small or the header doesn't fit nPacketSize
std::span<std::byte> EncodeTestPacket(std::span<std::byte> arrBuffer, std::size_t nPacketSize, bool bExtendedIDs);

}  // namespace gev
