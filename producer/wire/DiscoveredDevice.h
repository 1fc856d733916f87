#pragma once

#include <cstdint>
#include <string>

#include "GenTL/GenTL.h"

namespace producer {

/// What a camera said of itself, and what was seen of it from one adapter. A plain value.
///
/// All texts are valid UTF-8 without control characters, whatever the camera sent: what isn't becomes U+FFFD.
/// Addresses are values with the first octet highest.
/// Source of the fields: GigE Vision, DISCOVERY_ACK, bootstrap registers 0x0000 to 0x00F7.
struct DISCOVERED_DEVICE {
    std::uint64_t Mac = 0;  ///< the key: no two devices of one list share it
    std::uint32_t Address = 0;
    std::uint32_t SubnetMask = 0;
    std::uint32_t Gateway = 0;
    std::uint16_t VersionMajor = 0;  ///< of GigE Vision
    std::uint16_t VersionMinor = 0;
    std::uint32_t DeviceMode = 0;
    std::uint32_t SupportedIpConfiguration = 0;  ///< bits: persistent 1, DHCP 2, link-local 4
    std::uint32_t CurrentIpConfiguration = 0;
    std::string Manufacturer;
    std::string Model;
    std::string DeviceVersion;
    std::string ManufacturerInfo;
    std::string SerialNumber;
    std::string UserName;

    bool IsOutsideSubnet = false;  ///< in no subnet of the adapter: it can't be opened before it gets another address
    bool SharesAddress = false;    ///< another MAC of the same adapter answered with the same address
    bool SharesMac = false;        ///< two different answers came with this MAC; this is the first of them
    /// From the control channel privilege: open READWRITE, controlled by an application READONLY, held exclusively
    /// NOACCESS; outside the subnets NOACCESS; UNKNOWN when the camera didn't say. The channels of this process aren't
    /// told from those of others.
    DEVICE_ACCESS_STATUS AccessStatus = DEVICE_ACCESS_STATUS_UNKNOWN;

    bool operator==(const DISCOVERED_DEVICE&) const = default;
};

}  // namespace producer
