#include "ctl/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace {

// A double without an exponent has at most 309 digits before its point.
using TEXT_BUFFER = std::array<char, 400>;

}  // namespace

std::string NumberText(double fValue) {
    // Left to itself, the shortest text of a million is 1e+06.
    constexpr double kSmallestPlain = 1e-4;
    constexpr double kLargestPlain = 1e15;
    const double fSize = std::abs(fValue);
    const bool bPlain = fValue == 0 || (fSize >= kSmallestPlain && fSize < kLargestPlain);
    TEXT_BUFFER arrText;
    char* const pEnd = arrText.data() + arrText.size();
    const auto objResult = bPlain ? std::to_chars(arrText.data(), pEnd, fValue, std::chars_format::fixed)
                                  : std::to_chars(arrText.data(), pEnd, fValue);
    return {arrText.data(), objResult.ptr};
}

std::string NumberText(double fValue, int nDigits) {
    TEXT_BUFFER arrText;
    const auto objResult =
        std::to_chars(arrText.data(), arrText.data() + arrText.size(), fValue, std::chars_format::fixed, nDigits);
    return objResult.ec == std::errc() ? std::string(arrText.data(), objResult.ptr) : NumberText(fValue);
}
