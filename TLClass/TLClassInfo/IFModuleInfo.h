#pragma once

#include <array>
#include <cstdint>
#include <string>

struct SPECIAL_INFO;

/// What a producer tells about an interface.
/// A field whose command the producer refused is empty, and its flag, the field's name with Valid behind it, is false.
/// The reserved members are room to grow.
struct IF_MODULE_INFO {
    std::string ID;
    std::string DisplayName;
    std::string TLType;
    std::array<std::string, 2> ReservedTexts;
    /// Not owned; set only while a list update makes interface objects of the records, otherwise null.
    SPECIAL_INFO* pSpecialInfo = nullptr;
    std::array<std::uint8_t, 24> ReservedBytes{};

    bool IDValid = false;
    bool DisplayNameValid = false;
    bool TLTypeValid = false;
    std::array<std::uint8_t, 6> ReservedFlags{};
};
