#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/PixelFormat.h"

namespace gev {

/// Payload types of blocks. A value that came off the wire may be none of these.
enum class EPayloadType : std::uint16_t {
    Image = 0x0001,
    RawData = 0x0002,
    File = 0x0003,
    ChunkData = 0x0004,  ///< the whole block is chunks
    ExtendedChunkData = 0x0005,
    Jpeg = 0x0006,
    Jpeg2000 = 0x0007,
    H264 = 0x0008,
    MultiZoneImage = 0x0009,
    MultiPart = 0x000A,
    GenDC = 0x000B,
    ImageWithChunks = 0x4001,
    RawDataWithChunks = 0x4002,
    FileWithChunks = 0x4003,
};

constexpr std::uint16_t kPayloadTypeChunksBehind = 0x4000;  ///< added to a type: chunks stand behind its data

/// The type without chunks behind it: Image for ImageWithChunks.
constexpr EPayloadType GetBaseType(EPayloadType nType) {
    return static_cast<EPayloadType>(static_cast<std::uint16_t>(nType) & 0x3FFF);
}

constexpr bool HasChunksBehind(EPayloadType nType) {
    return (static_cast<std::uint16_t>(nType) & kPayloadTypeChunksBehind) != 0;
}

constexpr std::size_t kLeaderSize = 12;       ///< of any type: what comes first in every leader
constexpr std::size_t kRawLeaderSize = 20;    ///< RawData, File (its name, terminated, may follow)
constexpr std::size_t kImageLeaderSize = 36;  ///< Image, ExtendedChunkData
constexpr std::size_t kLongestLeaderSize = kImageLeaderSize;

/// What a block's leader says, behind the GVSP header. Which fields count depends on the payload type.
struct GVSP_LEADER {
    EPayloadType PayloadType = EPayloadType::Image;
    std::uint8_t FieldInformation = 0;  ///< of interlaced images; 0 else
    std::uint64_t Timestamp = 0;        ///< ticks of the device

    // Image, ExtendedChunkData and these with chunks
    EPixelFormat PixelFormat{};
    std::uint32_t SizeX = 0;     ///< pixels
    std::uint32_t SizeY = 0;     ///< lines; an image of variable height says the real number in its trailer
    std::uint32_t OffsetX = 0;   ///< pixels
    std::uint32_t OffsetY = 0;   ///< lines
    std::uint16_t PaddingX = 0;  ///< bytes behind each line
    std::uint16_t PaddingY = 0;  ///< bytes behind the last line

    // RawData, File and these with chunks
    std::uint64_t DataSize = 0;  ///< bytes

    friend bool operator==(const GVSP_LEADER&, const GVSP_LEADER&) = default;
};

/// Whether the fields of an image count in a leader of this type.
bool IsImage(EPayloadType nType);

/// How long the leader of this type is.
std::size_t GetLeaderSize(EPayloadType nType);

/// Bytes that the image which a leader announces takes at least: its lines, each with its padding, and the padding
/// behind the last. Lines with padding are of whole bytes; without, a packed format may go on in the middle of a byte,
/// and a camera that doesn't sends up to a byte more for each line. Chunks aren't counted. What can't be said in 64
/// bits is the highest number.
std::uint64_t GetImageSize(const GVSP_LEADER& objLeader);

std::span<std::byte> EncodeLeader(std::span<std::byte> arrBuffer, const GVSP_LEADER& objLeader);
/// A leader of a type that isn't known gives what every leader has; what stands behind is not looked at.
/// @return false when it is shorter than its type's leader.
bool DecodeLeader(std::span<const std::byte> arrBody, GVSP_LEADER& objLeader);

}  // namespace gev
