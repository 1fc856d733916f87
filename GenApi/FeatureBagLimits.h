#pragma once

#include <cstddef>

// How much a feature bag takes in. Descriptions and files come from outside.

namespace GenApi_3_0 {

/// The most values that a selected feature is stored for, over all its selectors together: a look-up table of 12 bits
/// for each of four colours. A feature with more is stored for the present setting of its selectors alone.
inline constexpr std::size_t kMaxSelectorCombinations = 16'384;

/// Selectors on which one feature depends, over several levels. Real ones have three at most.
inline constexpr std::size_t kMaxSelectorsOfFeature = 8;

/// The most values read, and selectors moved or looked at, while one node map is stored or compared. Large cameras need
/// some ten thousand.
inline constexpr std::size_t kMaxStoreSteps = 1'000'000;

/// Bytes of a name in a line, and of a comment.
inline constexpr std::size_t kMaxNameLength = 1023;

}  // namespace GenApi_3_0
