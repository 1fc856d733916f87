#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "TLClass/TLClassInfo/CommonInfo.h"

/// What the features of an interface tell about each of its devices. A field whose feature couldn't be read is empty,
/// and its flag 0. The reserved members are room to grow.
struct COMMON_DEVICE_INFO : COMMON_INFO {
    std::string SerialNumber;
    std::string Version;
    std::string UserID;
    std::array<std::string, 3> ReservedTexts;

    std::uint8_t SerialNumberValid = 0;
    std::uint8_t VersionValid = 0;
    std::uint8_t UserIDValid = 0;
    std::array<std::uint8_t, 3> ReservedFlags{};
};
