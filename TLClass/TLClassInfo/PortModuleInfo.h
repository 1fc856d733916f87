#pragma once

#include <array>
#include <cstdint>
#include <string>

/// What a producer tells about a port.
/// A field whose command the producer refused is empty, and its flag, the field's name with Valid behind it, is false.
/// The reserved members are room to grow.
struct PORT_MODULE_INFO {
    std::string PortID;
    std::string PortName;
    std::array<std::string, 3> ReservedTexts;

    bool PortIDValid = false;
    bool PortNameValid = false;
    std::array<std::uint8_t, 7> ReservedFlags{};
};
