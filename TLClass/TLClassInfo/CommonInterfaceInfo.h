#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "TLClass/TLClassInfo/CommonInfo.h"

/// What the features of an interface tell about itself. A field whose feature couldn't be read is empty, and its flag
/// 0. The reserved members are room to grow.
struct COMMON_INTERFACE_INFO : COMMON_INFO {
    std::string Description;
    std::array<std::string, 3> ReservedTexts;

    std::uint8_t DescriptionValid = 0;
    std::array<std::uint8_t, 3> ReservedFlags{};
};
