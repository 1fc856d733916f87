#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace producer {

/// @param nLeastDigits  zeros stand in front of a shorter number
/// @return lower-case hexadecimal digits, without a prefix
std::string HexText(std::uint64_t nValue, std::size_t nLeastDigits = 1);

}  // namespace producer
