#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/Address.h"
#include "gev/GvcpHeader.h"

namespace gev {

/// FORCEIP_CMD: the device with this MAC takes this address until it is switched off. With the address 0.0.0.0 it
/// starts its IP configuration again instead, and sends no acknowledge.
struct FORCEIP_COMMAND {
    CMACAddress MAC;
    std::uint32_t IP = 0;
    std::uint32_t SubnetMask = 0;
    std::uint32_t Gateway = 0;
};

/// @param bBroadcastAcknowledge  the device may broadcast its acknowledge, which reaches a sender in another subnet
std::span<std::byte> EncodeForceIP(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                   const FORCEIP_COMMAND& objCommand, bool bBroadcastAcknowledge = false);
EGvcpStatus DecodeForceIP(std::span<const std::byte> arrPayload, FORCEIP_COMMAND& objCommand);

/// Vendor command 0x9000: the device with this MAC stores the address and the mask as its persistent configuration.
struct FORCEIPEX_COMMAND {
    CMACAddress MAC;
    std::uint32_t IP = 0;
    std::uint32_t SubnetMask = 0;
};

/// The layout is FORCEIP_CMD's with address and mask four bytes later, no gateway, and 76 bytes in all; the bytes
/// between that are not zero on the wire belong to the firmware of such devices and are not looked at.
EGvcpStatus DecodeForceIPEx(std::span<const std::byte> arrPayload, FORCEIPEX_COMMAND& objCommand);

}  // namespace gev
