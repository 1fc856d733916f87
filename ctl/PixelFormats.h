#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// How the samples of a pixel format lie in memory.
enum class PACKING {
    Byte,      ///< one byte each
    Word,      ///< two bytes each, the low one first, the value at the low end
    GigE10,    ///< two samples in three bytes: high eight bits, low two of both in bits 0-1 and 4-5, high eight bits
    GigE12,    ///< two samples in three bytes: high eight bits, low four of both, high eight bits
    LowFirst,  ///< a stream of bits from the low end of each byte up
    Rgb,       ///< three bytes a pixel, red first
    Bgr,       ///< three bytes a pixel, blue first
};

/// The colours of a mosaic, named by its first row; None for grey and for whole colours.
enum class MOSAIC { None, GR, RG, GB, BG };

struct PIXEL_FORMAT {
    std::uint32_t nCode;
    const char* pName;
    PACKING ePacking;
    unsigned nBits;  ///< that a sample has
    MOSAIC eMosaic;

    /// Memory for one pixel, which the code tells.
    constexpr std::size_t BitsPerPixel() const { return nCode >> 16 & 0xFF; }
};

/// The formats that can be made a picture of.
/// Source: GenICam pixel format naming convention.
std::span<const PIXEL_FORMAT> GetPixelFormats();

/// Null for a format that isn't among them.
const PIXEL_FORMAT* FindPixelFormat(std::uint64_t nCode);
