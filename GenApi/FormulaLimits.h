#pragma once

#include <cstddef>

namespace GenApi_3_0 {

/// Bytes of a formula and the Constants and Expressions that it needs, all together. Cameras have formulas of some
/// kilobytes; this leaves more than a factor of ten and keeps a compiled formula below a few megabytes.
inline constexpr std::size_t kMaxFormulaLength = std::size_t{128} * 1024;

/// Parentheses, calls and operators that may be open at one place of the text. Each link of a chain of `?:` opens up to
/// three, `(A = 1) ? 5 : ((A = 2) ? 6 : (...))`, and chains over the entries of an enumeration have some hundreds.
inline constexpr std::size_t kMaxOpenOperators = 8192;

/// Values that wait for their operator while a formula runs. The stack of an evaluation is a local array of this size.
/// Links of `?:`, `&&` and `||` don't add to it; twenty are seldom reached.
inline constexpr std::size_t kMaxValuesAtOnce = 512;

/// Expressions that one formula needs; each has a place in a local array of an evaluation.
inline constexpr std::size_t kMaxExpressions = 512;

/// Variables, Constants and Expressions that a formula is given, whether it uses them or not. Real ones have some tens.
inline constexpr std::size_t kMaxFormulaNames = 2048;

}  // namespace GenApi_3_0
