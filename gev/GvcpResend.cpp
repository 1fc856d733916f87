#include "gev/GvcpResend.h"

#include "gev/BigEndian.h"

namespace gev {

namespace {

constexpr std::size_t kResendSize = 12;
constexpr std::size_t kExtendedResendSize = 20;
constexpr std::size_t kBlockIDOffset = 2;
constexpr std::size_t kFirstPacketOffset = 4;
constexpr std::size_t kLastPacketOffset = 8;
constexpr std::size_t kExtendedBlockIDOffset = 12;

constexpr std::uint64_t kBlockIDMask = 0xFFFF;
constexpr std::uint32_t kPacketIDMask = 0x00FF'FFFF;

bool IsSensible(const RESEND_COMMAND& objCommand) {
    return objCommand.BlockID != 0 && objCommand.FirstPacketID <= objCommand.LastPacketID;
}

bool FitsShortIDs(const RESEND_COMMAND& objCommand) {
    return objCommand.BlockID <= kBlockIDMask && objCommand.LastPacketID <= kPacketIDMask;
}

}  // namespace

std::span<std::byte> EncodeResend(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                  const RESEND_COMMAND& objCommand) {
    const bool bExtendedIDs = objCommand.ExtendedIDs;
    if (!IsSensible(objCommand) || (!bExtendedIDs && !FitsShortIDs(objCommand))) {
        return {};
    }
    const auto arrDatagram =
        EncodeCommand(arrBuffer, EGvcpCommand::PacketResend, bExtendedIDs ? kGvcpFlagExtendedIDs : std::uint8_t{0},
                      nRequestID, bExtendedIDs ? kExtendedResendSize : kResendSize);
    if (arrDatagram.empty()) {
        return {};
    }
    const auto arrPayload = arrDatagram.subspan(kGvcpHeaderSize);
    Put16(arrPayload, 0, objCommand.StreamChannel);
    Put32(arrPayload, kFirstPacketOffset, objCommand.FirstPacketID);
    Put32(arrPayload, kLastPacketOffset, objCommand.LastPacketID);
    if (bExtendedIDs) {
        Put64(arrPayload, kExtendedBlockIDOffset, objCommand.BlockID);
    } else {
        Put16(arrPayload, kBlockIDOffset, static_cast<std::uint16_t>(objCommand.BlockID));
    }
    return arrDatagram;
}

EGvcpStatus DecodeResend(const GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> arrPayload,
                         RESEND_COMMAND& objCommand) {
    const bool bExtendedIDs = (objHeader.Flags & kGvcpFlagExtendedIDs) != 0;
    if (arrPayload.size() != (bExtendedIDs ? kExtendedResendSize : kResendSize)) {
        return EGvcpStatus::InvalidHeader;
    }
    const std::uint32_t nMask = bExtendedIDs ? ~std::uint32_t{0} : kPacketIDMask;  // the byte above is reserved
    const RESEND_COMMAND objResend{
        Get16(arrPayload, 0),
        bExtendedIDs ? Get64(arrPayload, kExtendedBlockIDOffset) : Get16(arrPayload, kBlockIDOffset),
        Get32(arrPayload, kFirstPacketOffset) & nMask, Get32(arrPayload, kLastPacketOffset) & nMask, bExtendedIDs};
    if (!IsSensible(objResend)) {
        return EGvcpStatus::InvalidParameter;
    }
    objCommand = objResend;
    return EGvcpStatus::Success;
}

}  // namespace gev
