#include "gev/GvcpForceIP.h"

#include "gev/BigEndian.h"

namespace gev {

namespace {

// Offsets into the payload of FORCEIP_CMD.
constexpr std::size_t kForceIPSize = 56;
constexpr std::size_t kMACOffset = 2;
constexpr std::size_t kIPOffset = 20;
constexpr std::size_t kSubnetMaskOffset = 36;
constexpr std::size_t kGatewayOffset = 52;

// Offsets into the payload of the vendor command; its MAC stands where FORCEIP_CMD has it.
constexpr std::size_t kForceIPExSize = 76;
constexpr std::size_t kIPOffsetEx = 24;
constexpr std::size_t kSubnetMaskOffsetEx = 40;

}  // namespace

std::span<std::byte> EncodeForceIP(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                   const FORCEIP_COMMAND& objCommand, bool bBroadcastAcknowledge) {
    const auto nFlags =
        static_cast<std::uint8_t>(kGvcpFlagAcknowledge | (bBroadcastAcknowledge ? kGvcpFlagBroadcastAcknowledge : 0));
    const auto arrDatagram = EncodeCommand(arrBuffer, EGvcpCommand::ForceIP, nFlags, nRequestID, kForceIPSize);
    if (!arrDatagram.empty()) {
        const auto arrPayload = arrDatagram.subspan<kGvcpHeaderSize, kForceIPSize>();
        objCommand.MAC.Put(arrPayload.subspan<kMACOffset, 6>());
        Put32(arrPayload, kIPOffset, objCommand.IP);
        Put32(arrPayload, kSubnetMaskOffset, objCommand.SubnetMask);
        Put32(arrPayload, kGatewayOffset, objCommand.Gateway);
    }
    return arrDatagram;
}

EGvcpStatus DecodeForceIP(std::span<const std::byte> arrPayload, FORCEIP_COMMAND& objCommand) {
    if (arrPayload.size() != kForceIPSize) {
        return EGvcpStatus::InvalidHeader;
    }
    objCommand = {CMACAddress::Get(arrPayload.subspan<kMACOffset, 6>()), Get32(arrPayload, kIPOffset),
                  Get32(arrPayload, kSubnetMaskOffset), Get32(arrPayload, kGatewayOffset)};
    return EGvcpStatus::Success;
}

EGvcpStatus DecodeForceIPEx(std::span<const std::byte> arrPayload, FORCEIPEX_COMMAND& objCommand) {
    if (arrPayload.size() != kForceIPExSize) {
        return EGvcpStatus::InvalidHeader;
    }
    objCommand = {CMACAddress::Get(arrPayload.subspan<kMACOffset, 6>()), Get32(arrPayload, kIPOffsetEx),
                  Get32(arrPayload, kSubnetMaskOffsetEx)};
    return EGvcpStatus::Success;
}

}  // namespace gev
