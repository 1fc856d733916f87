#pragma once

#include <cstdint>
#include <string>

/// The most children that a module is believed to have. A producer that counts more answers nonsense, and a list of as
/// many records as a 32-bit number can count would take all memory and no end of calls.
inline constexpr std::uint32_t kMaxChildCount = 65536;

/// @param strFile, nLine, strFunction  the place where the children were counted, which the exception carries
/// @throws CUnexpectedError  more than kMaxChildCount
void CheckChildCount(std::uint32_t nCount, const std::string& strFile, int nLine, const std::string& strFunction);
