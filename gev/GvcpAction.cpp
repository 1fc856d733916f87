#include "gev/GvcpAction.h"

#include "gev/BigEndian.h"

namespace gev {

namespace {

constexpr std::size_t kActionSize = 12;

}  // namespace

std::span<std::byte> EncodeAction(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                  const ACTION_COMMAND& objCommand, bool bAcknowledge) {
    const auto arrDatagram =
        EncodeCommand(arrBuffer, EGvcpCommand::Action, bAcknowledge ? kGvcpFlagAcknowledge : std::uint8_t{0},
                      nRequestID, kActionSize);
    if (!arrDatagram.empty()) {
        const auto arrPayload = arrDatagram.subspan(kGvcpHeaderSize);
        Put32(arrPayload, 0, objCommand.DeviceKey);
        Put32(arrPayload, 4, objCommand.GroupKey);
        Put32(arrPayload, 8, objCommand.GroupMask);
    }
    return arrDatagram;
}

EGvcpStatus DecodeAction(std::span<const std::byte> arrPayload, ACTION_COMMAND& objCommand) {
    if (arrPayload.size() != kActionSize) {
        return EGvcpStatus::InvalidHeader;
    }
    objCommand = {Get32(arrPayload, 0), Get32(arrPayload, 4), Get32(arrPayload, 8)};
    return EGvcpStatus::Success;
}

}  // namespace gev
