#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/GvspLeader.h"

namespace gev {

constexpr std::size_t kTrailerSize = 4;          ///< of any type: what comes first in every trailer
constexpr std::size_t kLongestTrailerSize = 16;  ///< ImageWithChunks

/// What a block's trailer says, behind the GVSP header. Which fields count depends on the payload type.
struct GVSP_TRAILER {
    EPayloadType PayloadType = EPayloadType::Image;
    std::uint32_t SizeY = 0;            ///< Image, ImageWithChunks, ExtendedChunkData: lines that were really sent
    std::uint32_t ChunkDataLength = 0;  ///< bytes of all chunks with their trailers, where there are chunks
    std::uint32_t ChunkLayoutID = 0;    ///< with chunks behind: equal as long as the chunks' layout stays

    friend bool operator==(const GVSP_TRAILER&, const GVSP_TRAILER&) = default;
};

/// How long the trailer of this type is.
std::size_t GetTrailerSize(EPayloadType nType);

std::span<std::byte> EncodeTrailer(std::span<std::byte> arrBuffer, const GVSP_TRAILER& objTrailer);
/// A trailer of a type that isn't known gives its type alone.
/// @return false when it is shorter than its type's trailer.
bool DecodeTrailer(std::span<const std::byte> arrBody, GVSP_TRAILER& objTrailer);

}  // namespace gev
