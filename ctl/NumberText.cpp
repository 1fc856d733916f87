#include "ctl/NumberText.h"

#include <array>
#include <charconv>

namespace {

// A double without an exponent has at most 309 digits before its point.
using TEXT_BUFFER = std::array<char, 400>;

}  // namespace

std::string NumberText(double fValue) {
    TEXT_BUFFER arrText;
    const auto objResult = std::to_chars(arrText.data(), arrText.data() + arrText.size(), fValue);
    return {arrText.data(), objResult.ptr};
}

std::string NumberText(double fValue, int nDigits) {
    TEXT_BUFFER arrText;
    const auto objResult =
        std::to_chars(arrText.data(), arrText.data() + arrText.size(), fValue, std::chars_format::fixed, nDigits);
    return objResult.ec == std::errc() ? std::string(arrText.data(), objResult.ptr) : NumberText(fValue);
}
