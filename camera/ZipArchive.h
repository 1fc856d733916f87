#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace camera {

/// A ZIP file with one entry, deflated, its sizes in the entry's own header.
/// @throws std::runtime_error  the library that packs fails
std::vector<std::byte> MakeZipArchive(std::string_view strName, std::string_view strContent);

// Places in such a file, of little-endian numbers of 4 bytes, and where the entry's name begins.
inline constexpr std::size_t kZipUncompressedSizePlace = 22;
inline constexpr std::size_t kZipNamePlace = 30;

}  // namespace camera
