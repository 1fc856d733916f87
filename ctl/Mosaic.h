#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ctl/PixelFormats.h"

/// Makes colours of a Bayer mosaic: each pixel keeps the colour it measured, the other two are averages of the nearest
/// pixels that measured them. At the edges the picture counts as mirrored.
/// @param vecSample  nWidth * nHeight samples, row by row; both at least 2
/// @return three samples a pixel: red, green, blue
std::vector<std::uint16_t> Demosaic(std::span<const std::uint16_t> vecSample, std::size_t nWidth, std::size_t nHeight,
                                    MOSAIC eMosaic);
