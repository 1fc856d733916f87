#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What a frame's bytes mean.
struct FRAME_SHAPE {
    std::uint64_t nPixelFormat = 0;  ///< the 32-bit number of the naming convention
    std::size_t nWidth = 0;          ///< pixels
    std::size_t nHeight = 0;         ///< pixels
    std::size_t nPadding = 0;        ///< bytes behind each row
};

/// A picture for a file: rows from the top, without padding.
struct IMAGE {
    std::size_t nWidth = 0;
    std::size_t nHeight = 0;
    unsigned nChannels = 1;         ///< 1 for grey, 3 for red, green, blue
    unsigned nBits = 8;             ///< of a sample: 8, or 16 with the high byte first
    unsigned nSignificantBits = 8;  ///< that the camera measured; they stand highest in a sample
    std::vector<std::uint8_t> vecSample;
};

/// The name of a pixel format, "Mono8"; its number, "0x01080001", for one that isn't known.
std::string GetPixelFormatName(std::uint64_t nPixelFormat);

/// Whether ConvertFrame knows the format: Mono8 to Mono16, Mono and Bayer with 10 and 12 bits packed in either way,
/// Bayer8 to Bayer16, RGB8 and BGR8.
bool IsConvertible(std::uint64_t nPixelFormat);

/// Makes a picture of a frame. Samples of 10, 12 and 14 bits are shifted up to fill 16. A Bayer mosaic becomes colours,
/// each missing one the average of its neighbours.
/// @return nothing if the format isn't known, the frame has no size, or the bytes are too few for it
std::optional<IMAGE> ConvertFrame(std::span<const std::uint8_t> vecData, const FRAME_SHAPE& objShape);
