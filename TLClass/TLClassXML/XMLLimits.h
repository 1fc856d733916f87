#pragma once

#include <cstddef>

/// Bytes of a description, packed or not. The largest that cameras have come to some megabytes; a URL or an archive
/// that claims more than this is taken to be wrong before anything is allocated for it.
inline constexpr std::size_t kMaxDescriptionLength = std::size_t{64} << 20;
