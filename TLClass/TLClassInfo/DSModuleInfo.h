#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

/// What a producer tells about a data stream. PayloadSize is in bytes, BufAlignment too; the others are counts.
/// A field whose command the producer refused is empty, and its flag, the field's name with Valid behind it, is false.
/// The reserved members are room to grow.
struct DS_MODULE_INFO {
    std::string ID;
    std::size_t PayloadSize = 0;
    std::size_t NumChunksMax = 0;
    std::size_t BufAnnounceMin = 0;
    std::size_t BufAnnounceMax = 0;
    std::size_t BufAlignment = 0;
    std::array<std::uint8_t, 32> ReservedBytes{};

    bool IDValid = false;
    bool PayloadSizeValid = false;
    bool NumChunksMaxValid = false;
    bool BufAnnounceMinValid = false;
    bool BufAnnounceMaxValid = false;
    bool BufAlignmentValid = false;
    std::array<std::uint8_t, 4> ReservedFlags{};
};
