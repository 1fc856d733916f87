#pragma once

#include <array>
#include <cstdint>
#include <string>

/// What a producer tells about itself or about its system module.
/// A field whose command the producer refused is empty, and its flag, the field's name with Valid behind it, is false.
/// The reserved members are room to grow.
struct TL_MODULE_INFO {
    std::string Vendor;
    std::string Model;
    std::string Version;
    std::string TLType;
    std::string Name;
    std::string PathName;
    std::string DisplayName;
    std::array<std::string, 2> ReservedTexts;

    bool VendorValid = false;
    bool ModelValid = false;
    bool VersionValid = false;
    bool TLTypeValid = false;
    bool NameValid = false;
    bool PathNameValid = false;
    bool DisplayNameValid = false;
    std::array<std::uint8_t, 2> ReservedFlags{};
};
