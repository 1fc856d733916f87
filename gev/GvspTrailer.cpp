#include "gev/GvspTrailer.h"

#include <algorithm>

#include "gev/BigEndian.h"

namespace gev {

namespace {

constexpr std::size_t kPayloadTypeOffset = 2;

/// Where the fields of a type's trailer lie; 0 for one that it hasn't.
struct TRAILER_LAYOUT {
    std::size_t SizeY = 0;
    std::size_t ChunkDataLength = 0;
    std::size_t ChunkLayoutID = 0;
    std::size_t Size = kTrailerSize;
};

TRAILER_LAYOUT GetLayout(EPayloadType nType) {
    if (nType == EPayloadType::ChunkData) {
        return {0, 4, 0, 8};
    }
    if (nType == EPayloadType::ExtendedChunkData) {
        return {8, 4, 12, 16};
    }
    if (HasChunksBehind(nType)) {
        return IsImage(nType) ? TRAILER_LAYOUT{4, 8, 12, 16} : TRAILER_LAYOUT{0, 4, 8, 12};
    }
    return IsImage(nType) ? TRAILER_LAYOUT{4, 0, 0, 8} : TRAILER_LAYOUT{};
}

void PutField(std::span<std::byte> arrTrailer, std::size_t nOffset, std::uint32_t nValue) {
    if (nOffset != 0) {
        Put32(arrTrailer, nOffset, nValue);
    }
}

std::uint32_t GetField(std::span<const std::byte> arrBody, std::size_t nOffset) {
    return nOffset != 0 ? Get32(arrBody, nOffset) : 0;
}

}  // namespace

std::size_t GetTrailerSize(EPayloadType nType) {
    return GetLayout(nType).Size;
}

std::span<std::byte> EncodeTrailer(std::span<std::byte> arrBuffer, const GVSP_TRAILER& objTrailer) {
    const TRAILER_LAYOUT objLayout = GetLayout(objTrailer.PayloadType);
    if (arrBuffer.size() < objLayout.Size) {
        return {};
    }
    const auto arrTrailer = arrBuffer.first(objLayout.Size);
    std::ranges::fill(arrTrailer, std::byte{0});
    Put16(arrTrailer, kPayloadTypeOffset, static_cast<std::uint16_t>(objTrailer.PayloadType));
    PutField(arrTrailer, objLayout.SizeY, objTrailer.SizeY);
    PutField(arrTrailer, objLayout.ChunkDataLength, objTrailer.ChunkDataLength);
    PutField(arrTrailer, objLayout.ChunkLayoutID, objTrailer.ChunkLayoutID);
    return arrTrailer;
}

bool DecodeTrailer(std::span<const std::byte> arrBody, GVSP_TRAILER& objTrailer) {
    if (arrBody.size() < kTrailerSize) {
        return false;
    }
    const auto nType = static_cast<EPayloadType>(Get16(arrBody, kPayloadTypeOffset));
    const TRAILER_LAYOUT objLayout = GetLayout(nType);
    if (arrBody.size() < objLayout.Size) {
        return false;
    }
    objTrailer = {nType, GetField(arrBody, objLayout.SizeY), GetField(arrBody, objLayout.ChunkDataLength),
                  GetField(arrBody, objLayout.ChunkLayoutID)};
    return true;
}

}  // namespace gev
