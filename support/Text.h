#pragma once

#include <string>
#include <vector>

/// Fills a printf-style format. The result ends at 1023 bytes; what is beyond is cut, which is no error.
///
/// Use only %s, %c, %d, %u and %x (with widths): what other conversions write, those of floating-point numbers above
/// all, depends on the locale of the process.
[[gnu::format(printf, 1, 2)]] std::string Format(const char* pFormat, ...);

/// The one form of a line that tells of a failure: "%s(%d):'%s':%s", cut like Format's text.
std::string FormatFailure(const std::string& strFile, int nLine, const std::string& strFunction,
                          const std::string& strText);

/// Cuts a text at each separator, which may be longer than one character. Empty pieces are dropped, nothing is trimmed.
/// An empty separator cuts nowhere.
std::vector<std::string> Split(const std::string& strText, const std::string& strSeparator);

/// Maps a to z to A to Z and leaves every other byte, whatever the locale.
std::string ToUpperAscii(const std::string& strText);

/// Converts UTF-8. What isn't UTF-8 becomes U+FFFD.
/// @param strWide  gets as many characters as strNarrow has bytes, the unused ones at its end being 0
/// @return false, with strWide untouched, for an empty text.
bool StringToWString(const std::string& strNarrow, std::wstring& strWide);

/// Converts to UTF-8. What isn't a Unicode character becomes U+FFFD.
/// @param pWide  NUL-ended
/// @return false, with strNarrow untouched, for a null pointer.
bool WStringToString(const wchar_t* pWide, std::string& strNarrow);
