#pragma once

#include <array>
#include <cstdint>
#include <string>

struct COMMON_DEVICE_INFO;
struct SPECIAL_INFO;

/// What a producer tells about a device.
/// A field whose command the producer refused is empty, and its flag, the field's name with Valid behind it, is false.
/// The reserved members are room to grow.
struct DEV_MODULE_INFO {
    std::string ID;
    std::string Vendor;
    std::string Model;
    std::string TLType;
    std::string DisplayName;
    std::int32_t AccessStatus = 0;
    /// Not owned, both; set only while a list update makes device objects of the records, otherwise null.
    COMMON_DEVICE_INFO* pCommonInfo = nullptr;
    SPECIAL_INFO* pSpecialInfo = nullptr;
    std::array<std::uint8_t, 12> ReservedBytes{};

    bool IDValid = false;
    bool VendorValid = false;
    bool ModelValid = false;
    bool TLTypeValid = false;
    bool DisplayNameValid = false;
    bool AccessStatusValid = false;
    std::array<std::uint8_t, 3> ReservedFlags{};
};
