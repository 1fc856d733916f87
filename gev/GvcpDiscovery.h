#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/Address.h"
#include "gev/FixedText.h"
#include "gev/GvcpHeader.h"

namespace gev {

constexpr std::size_t kDiscoveryAckSize = 248;

/// What a device says of itself in DISCOVERY_ACK: its bootstrap registers from 0x0000 to 0x00F7.
struct DISCOVERY_RECORD {
    std::uint16_t VersionMajor = 0;  ///< of the GigE Vision standard
    std::uint16_t VersionMinor = 0;
    std::uint32_t DeviceMode = 0;  ///< kDeviceMode... bits
    CMACAddress MAC;
    std::uint32_t SupportedIPConfiguration = 0;  ///< kIPConfiguration... bits
    std::uint32_t CurrentIPConfiguration = 0;
    std::uint32_t IP = 0;
    std::uint32_t SubnetMask = 0;
    std::uint32_t Gateway = 0;
    CFixedText<32> ManufacturerName;  ///< texts as they came: neither printable nor UTF-8 for certain
    CFixedText<32> ModelName;
    CFixedText<32> DeviceVersion;
    CFixedText<48> ManufacturerInformation;
    CFixedText<16> SerialNumber;
    CFixedText<16> UserDefinedName;

    friend bool operator==(const DISCOVERY_RECORD&, const DISCOVERY_RECORD&) = default;
};

/// The record as payload of DISCOVERY_ACK, and so as the first 248 bytes of a device's registers.
void PutDiscoveryRecord(const DISCOVERY_RECORD& objRecord, std::span<std::byte, kDiscoveryAckSize> arrRegisters);

std::span<std::byte> EncodeDiscoveryAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID,
                                        const DISCOVERY_RECORD& objRecord);

/// @return InvalidHeader for fewer than 248 bytes; what stands behind them is not looked at.
EGvcpStatus DecodeDiscoveryAck(std::span<const std::byte> arrPayload, DISCOVERY_RECORD& objRecord);

/// DISCOVERY_CMD has no payload.
EGvcpStatus DecodeDiscovery(std::span<const std::byte> arrPayload);

}  // namespace gev
