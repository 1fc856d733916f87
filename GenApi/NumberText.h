#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Numbers as descriptions and users write them, whatever locale the process has.

namespace GenApi_3_0 {

/// Without the white space of XML at both ends.
std::string_view TrimXmlSpace(std::string_view strText);

/// Decimal with or without sign, or hexadecimal behind 0x in either case, white space around it allowed. A hexadecimal
/// number of up to 64 bits is a bit pattern: 0xFFFFFFFFFFFFFFFF is -1.
/// @return nothing if the text is anything else or the number doesn't fit
std::optional<std::int64_t> ParseInteger(std::string_view strText);

/// What ParseInteger takes, decimal fractions, exponents, INF and NaN.
std::optional<double> ParseFloat(std::string_view strText);

// Descriptions say that a number has no limit by the largest number that their authors had.

/// What ParseInteger takes, and decimal numbers of 64 bits without sign, cut to the largest with one.
std::optional<std::int64_t> ParseMaximum(std::string_view strText);

/// What ParseFloat takes, with numbers beyond the range of double cut to its ends: a largest double of few digits, as
/// in 1.79769313486232E+308, is beyond it.
std::optional<double> ParseFloatLimit(std::string_view strText);

/// 1 or 0, true or false with or without capitals, white space around it allowed.
std::optional<bool> ParseBoolean(std::string_view strText);

std::string FormatInteger(std::int64_t nValue);
/// Upper case behind 0x, negative values as their 64-bit pattern.
std::string FormatHex(std::int64_t nValue);
/// The shortest text that reads back as the same value.
std::string FormatFloat(double fValue);

/// The nearest integer.
/// @return nothing for what no 64-bit integer comes near to, NaN included
std::optional<std::int64_t> RoundToInteger(double fValue);

/// The nearest integer, with what lies beyond the 64-bit range cut to its ends and NaN as 0.
std::int64_t SaturateToInteger(double fValue);

}  // namespace GenApi_3_0
