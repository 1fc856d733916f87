#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/GvcpHeader.h"

namespace gev {

/// ACTION_CMD: devices with this key do what they have set up for the group, if one of the mask's bits is theirs.
struct ACTION_COMMAND {
    std::uint32_t DeviceKey = 0;
    std::uint32_t GroupKey = 0;
    std::uint32_t GroupMask = 0;
};

std::span<std::byte> EncodeAction(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                  const ACTION_COMMAND& objCommand, bool bAcknowledge);
/// @return InvalidHeader for a payload that isn't 12 bytes; an action at a set time, which is longer, is refused.
EGvcpStatus DecodeAction(std::span<const std::byte> arrPayload, ACTION_COMMAND& objCommand);

}  // namespace gev
