#include "gev/GvspHeader.h"

#include <algorithm>

#include "gev/BigEndian.h"

namespace gev {

namespace {

constexpr std::size_t kBlockIDOffset = 2;  // with extended IDs the flags
constexpr std::size_t kFormatOffset = 4;
constexpr std::size_t kPacketIDOffset = 4;  // 24 bits behind the format
constexpr std::size_t kExtendedBlockIDOffset = 8;
constexpr std::size_t kExtendedPacketIDOffset = 16;

constexpr std::uint8_t kExtendedIDsBit = 0x80;
constexpr std::uint8_t kFormatMask = 0x0F;

}  // namespace

std::span<std::byte> EncodeGvspHeader(std::span<std::byte> arrBuffer, const GVSP_HEADER& objHeader) {
    const bool bFits = objHeader.ExtendedIDs ||
                       (objHeader.BlockID <= kGvspHighestBlockID && objHeader.PacketID <= kGvspHighestPacketID);
    if (!bFits || arrBuffer.size() < objHeader.GetSize()) {
        return {};
    }
    const auto arrHeader = arrBuffer.first(objHeader.GetSize());
    const auto nFormat = static_cast<std::uint8_t>(objHeader.Format);
    Put16(arrHeader, 0, static_cast<std::uint16_t>(objHeader.Status));
    if (objHeader.ExtendedIDs) {
        Put16(arrHeader, kBlockIDOffset, objHeader.Flags);
        Put32(arrHeader, kFormatOffset, std::uint32_t{static_cast<std::uint8_t>(nFormat | kExtendedIDsBit)} << 24);
        Put64(arrHeader, kExtendedBlockIDOffset, objHeader.BlockID);
        Put32(arrHeader, kExtendedPacketIDOffset, objHeader.PacketID);
    } else {
        Put16(arrHeader, kBlockIDOffset, static_cast<std::uint16_t>(objHeader.BlockID));
        Put32(arrHeader, kPacketIDOffset, std::uint32_t{nFormat} << 24 | objHeader.PacketID);
    }
    return arrHeader;
}

bool DecodeGvspHeader(std::span<const std::byte> arrPacket, GVSP_HEADER& objHeader,
                      std::span<const std::byte>& arrBody) {
    if (arrPacket.size() < kGvspHeaderSize) {
        return false;
    }
    const auto nFormat = std::to_integer<std::uint8_t>(arrPacket[kFormatOffset]);
    const bool bExtendedIDs = (nFormat & kExtendedIDsBit) != 0;
    if (bExtendedIDs && arrPacket.size() < kGvspExtendedHeaderSize) {
        return false;
    }
    objHeader.Status = static_cast<EGvcpStatus>(Get16(arrPacket, 0));
    objHeader.Format = static_cast<EGvspFormat>(nFormat & kFormatMask);
    objHeader.ExtendedIDs = bExtendedIDs;
    if (bExtendedIDs) {
        objHeader.Flags = Get16(arrPacket, kBlockIDOffset);
        objHeader.BlockID = Get64(arrPacket, kExtendedBlockIDOffset);
        objHeader.PacketID = Get32(arrPacket, kExtendedPacketIDOffset);
    } else {
        objHeader.Flags = 0;
        objHeader.BlockID = Get16(arrPacket, kBlockIDOffset);
        objHeader.PacketID = Get32(arrPacket, kPacketIDOffset) & kGvspHighestPacketID;
    }
    arrBody = arrPacket.subspan(objHeader.GetSize());
    return true;
}

std::span<std::byte> EncodeTestPacket(std::span<std::byte> arrBuffer, std::size_t nPacketSize, bool bExtendedIDs) {
    GVSP_HEADER objHeader;
    objHeader.ExtendedIDs = bExtendedIDs;
    objHeader.BlockID = kGvspTestBlockID;
    if (nPacketSize < kIPAndUDPHeaderSize + objHeader.GetSize() ||
        arrBuffer.size() < nPacketSize - kIPAndUDPHeaderSize) {
        return {};
    }
    const auto arrPacket = arrBuffer.first(nPacketSize - kIPAndUDPHeaderSize);
    std::ranges::fill(arrPacket, std::byte{0});
    EncodeGvspHeader(arrPacket, objHeader);
    return arrPacket;
}

}  // namespace gev
