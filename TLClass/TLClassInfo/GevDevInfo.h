#pragma once

#include <cstdint>

#include "TLClass/TLClassInfo/SpecialInfo.h"

/// The network side of a GigE Vision device. IPv4 addresses stand in the low 32 bits, a MAC address in the low 48,
/// first octet highest. A field whose feature couldn't be read is 0, and its flag 0.
struct GEV_DEV_INFO : SPECIAL_INFO {
    std::int64_t IPAddress = 0;
    std::int64_t SubnetMask = 0;
    std::int64_t MACAddress = 0;
    std::int64_t Gateway = 0;

    std::uint8_t IPAddressValid = 0;
    std::uint8_t SubnetMaskValid = 0;
    std::uint8_t MACAddressValid = 0;
    std::uint8_t GatewayValid = 0;
};
