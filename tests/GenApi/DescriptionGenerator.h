#pragma once

#include <cstddef>
#include <string>

/// Writes a description like that of a big camera: the standard's feature names in their categories, registers, masks,
/// formulas, enumerations, selectors, far more invalidators than nodes, texts, and ports that nobody connects. The same
/// every time.
/// @param nSize  in bytes: the result has at least as many, and not many more
std::string GenerateDescription(std::size_t nSize);

/// Bytes of a big camera's description.
inline constexpr std::size_t kBigDescriptionSize = 1'500'000;
