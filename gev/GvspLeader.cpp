#include "gev/GvspLeader.h"

#include <algorithm>
#include <limits>

#include "gev/BigEndian.h"

namespace gev {

namespace {

constexpr std::size_t kPayloadTypeOffset = 2;
constexpr std::size_t kTimestampOffset = 4;
constexpr std::size_t kPixelFormatOffset = 12;
constexpr std::size_t kSizeXOffset = 16;
constexpr std::size_t kSizeYOffset = 20;
constexpr std::size_t kOffsetXOffset = 24;
constexpr std::size_t kOffsetYOffset = 28;
constexpr std::size_t kPaddingXOffset = 32;
constexpr std::size_t kPaddingYOffset = 34;
constexpr std::size_t kDataSizeOffset = 12;

bool HasDataSize(EPayloadType nType) {
    return GetBaseType(nType) == EPayloadType::RawData || GetBaseType(nType) == EPayloadType::File;
}

}  // namespace

bool IsImage(EPayloadType nType) {
    return GetBaseType(nType) == EPayloadType::Image || GetBaseType(nType) == EPayloadType::ExtendedChunkData;
}

std::size_t GetLeaderSize(EPayloadType nType) {
    if (IsImage(nType)) {
        return kImageLeaderSize;
    }
    return HasDataSize(nType) ? kRawLeaderSize : kLeaderSize;
}

std::uint64_t GetImageSize(const GVSP_LEADER& objLeader) {
    // A line takes under 2^38 bytes, so that the number of lines decides whether the product fits.
    const std::uint64_t nBits = std::uint64_t{objLeader.SizeX} * GetBitsPerPixel(objLeader.PixelFormat);
    const std::uint64_t nLine = nBits / 8 + objLeader.PaddingX;
    const std::uint64_t nRest = nBits % 8;
    const std::uint64_t nRests =
        objLeader.PaddingX != 0 ? (nRest != 0 ? objLeader.SizeY : 0) : (nRest * objLeader.SizeY + 7) / 8;
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t nBehind = nRests + objLeader.PaddingY;
    if (nLine != 0 && objLeader.SizeY > (kMost - nBehind) / nLine) {
        return kMost;
    }
    return nLine * objLeader.SizeY + nBehind;
}

std::span<std::byte> EncodeLeader(std::span<std::byte> arrBuffer, const GVSP_LEADER& objLeader) {
    const std::size_t nSize = GetLeaderSize(objLeader.PayloadType);
    if (arrBuffer.size() < nSize) {
        return {};
    }
    const auto arrLeader = arrBuffer.first(nSize);
    std::ranges::fill(arrLeader, std::byte{0});
    arrLeader[0] = std::byte{objLeader.FieldInformation};
    Put16(arrLeader, kPayloadTypeOffset, static_cast<std::uint16_t>(objLeader.PayloadType));
    Put64(arrLeader, kTimestampOffset, objLeader.Timestamp);
    if (IsImage(objLeader.PayloadType)) {
        Put32(arrLeader, kPixelFormatOffset, static_cast<std::uint32_t>(objLeader.PixelFormat));
        Put32(arrLeader, kSizeXOffset, objLeader.SizeX);
        Put32(arrLeader, kSizeYOffset, objLeader.SizeY);
        Put32(arrLeader, kOffsetXOffset, objLeader.OffsetX);
        Put32(arrLeader, kOffsetYOffset, objLeader.OffsetY);
        Put16(arrLeader, kPaddingXOffset, objLeader.PaddingX);
        Put16(arrLeader, kPaddingYOffset, objLeader.PaddingY);
    } else if (HasDataSize(objLeader.PayloadType)) {
        Put64(arrLeader, kDataSizeOffset, objLeader.DataSize);
    }
    return arrLeader;
}

bool DecodeLeader(std::span<const std::byte> arrBody, GVSP_LEADER& objLeader) {
    if (arrBody.size() < kLeaderSize) {
        return false;
    }
    GVSP_LEADER objResult;
    objResult.PayloadType = static_cast<EPayloadType>(Get16(arrBody, kPayloadTypeOffset));
    if (arrBody.size() < GetLeaderSize(objResult.PayloadType)) {
        return false;
    }
    objResult.FieldInformation = std::to_integer<std::uint8_t>(arrBody[0]);
    objResult.Timestamp = Get64(arrBody, kTimestampOffset);
    if (IsImage(objResult.PayloadType)) {
        objResult.PixelFormat = static_cast<EPixelFormat>(Get32(arrBody, kPixelFormatOffset));
        objResult.SizeX = Get32(arrBody, kSizeXOffset);
        objResult.SizeY = Get32(arrBody, kSizeYOffset);
        objResult.OffsetX = Get32(arrBody, kOffsetXOffset);
        objResult.OffsetY = Get32(arrBody, kOffsetYOffset);
        objResult.PaddingX = Get16(arrBody, kPaddingXOffset);
        objResult.PaddingY = Get16(arrBody, kPaddingYOffset);
    } else if (HasDataSize(objResult.PayloadType)) {
        objResult.DataSize = Get64(arrBody, kDataSizeOffset);
    }
    objLeader = objResult;
    return true;
}

}  // namespace gev
