#include "GenApi/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace GenApi_3_0 {
namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;

bool IsXmlSpace(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

// from_chars takes no plus sign, descriptions do.
std::string_view WithoutPlus(std::string_view strText) {
    if (strText.size() > 1 && strText[0] == '+' && strText[1] != '-') {
        strText.remove_prefix(1);
    }
    return strText;
}

bool IsHex(std::string_view strText) {
    return strText.size() > 2 && strText[0] == '0' && (strText[1] == 'x' || strText[1] == 'X');
}

template <class Value, class... Format>
std::optional<Value> ParseWhole(std::string_view strText, Format... objFormat) {
    Value value{};
    const char* pEnd = strText.data() + strText.size();
    const auto objResult = std::from_chars(strText.data(), pEnd, value, objFormat...);
    if (objResult.ec != std::errc() || objResult.ptr != pEnd) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

std::string_view TrimXmlSpace(std::string_view strText) {
    while (!strText.empty() && IsXmlSpace(strText.front())) {
        strText.remove_prefix(1);
    }
    while (!strText.empty() && IsXmlSpace(strText.back())) {
        strText.remove_suffix(1);
    }
    return strText;
}

std::optional<std::int64_t> ParseInteger(std::string_view strText) {
    strText = WithoutPlus(TrimXmlSpace(strText));
    if (!IsHex(strText)) {
        return ParseWhole<std::int64_t>(strText, 10);
    }
    const auto nPattern = ParseWhole<std::uint64_t>(strText.substr(2), 16);
    if (!nPattern) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(*nPattern);
}

std::optional<double> ParseFloat(std::string_view strText) {
    strText = WithoutPlus(TrimXmlSpace(strText));
    if (IsHex(strText)) {
        const auto nValue = ParseInteger(strText);
        return nValue ? std::optional<double>(static_cast<double>(*nValue)) : std::nullopt;
    }
    return ParseWhole<double>(strText, std::chars_format::general);
}

std::optional<std::int64_t> ParseMaximum(std::string_view strText) {
    if (const auto nValue = ParseInteger(strText)) {
        return nValue;
    }
    const bool bUnsigned = ParseWhole<std::uint64_t>(WithoutPlus(TrimXmlSpace(strText)), 10).has_value();
    return bUnsigned ? std::optional(std::numeric_limits<std::int64_t>::max()) : std::nullopt;
}

std::optional<double> ParseFloatLimit(std::string_view strText) {
    if (const auto fValue = ParseFloat(strText)) {
        return fValue;
    }
    constexpr long double kMax = std::numeric_limits<double>::max();
    const auto fLong = ParseWhole<long double>(WithoutPlus(TrimXmlSpace(strText)), std::chars_format::general);
    return fLong ? std::optional(static_cast<double>(std::clamp(*fLong, -kMax, kMax))) : std::nullopt;
}

std::optional<bool> ParseBoolean(std::string_view strText) {
    strText = TrimXmlSpace(strText);
    const bool bOn = strText == "1" || strText == "true" || strText == "True" || strText == "TRUE";
    const bool bOff = strText == "0" || strText == "false" || strText == "False" || strText == "FALSE";
    return bOn || bOff ? std::optional(bOn) : std::nullopt;
}

std::string FormatInteger(std::int64_t nValue) {
    std::array<char, 24> buffer{};
    const auto objResult = std::to_chars(buffer.data(), buffer.data() + buffer.size(), nValue);
    return {buffer.data(), objResult.ptr};
}

std::string FormatHex(std::int64_t nValue) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    auto nPattern = static_cast<std::uint64_t>(nValue);
    std::string strDigits;
    do {
        strDigits.insert(strDigits.begin(), kDigits[nPattern & 0xFU]);
        nPattern >>= 4U;
    } while (nPattern != 0);
    return "0x" + strDigits;
}

std::string FormatFloat(double fValue) {
    std::array<char, 40> buffer{};
    const auto objResult = std::to_chars(buffer.data(), buffer.data() + buffer.size(), fValue);
    return {buffer.data(), objResult.ptr};
}

std::optional<std::int64_t> RoundToInteger(double fValue) {
    const double fRounded = std::round(fValue);
    // Written so that NaN fails it too.
    if (!(fRounded >= -kTwoTo63 && fRounded < kTwoTo63)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(fRounded);
}

std::int64_t SaturateToInteger(double fValue) {
    if (const auto nValue = RoundToInteger(fValue)) {
        return *nValue;
    }
    if (std::isnan(fValue)) {
        return 0;
    }
    return fValue < 0 ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

}  // namespace GenApi_3_0
