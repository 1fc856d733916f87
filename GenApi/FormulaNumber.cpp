#include "GenApi/FormulaNumber.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <system_error>

#include "GenApi/FormulaArithmetic.h"
#include "GenApi/FormulaError.h"

namespace GenApi_3_0 {

namespace {

bool IsHexadecimal(std::string_view strText) {
    return strText.size() > 2 && (strText[1] == 'x' || strText[1] == 'X');
}

template <class Value, class... Format>
Value FromChars(std::string_view strText, Format... nFormat) {
    Value value{};
    const auto objResult = std::from_chars(strText.data(), strText.data() + strText.size(), value, nFormat...);
    if (objResult.ec == std::errc::result_out_of_range) {
        throw CFormulaFault("the number doesn't fit into 64 bits");
    }
    if (objResult.ec != std::errc() || objResult.ptr != strText.data() + strText.size()) {
        throw CFormulaFault("malformed number");
    }
    return value;
}

std::uint64_t ParseHexadecimal(std::string_view strText) {
    return FromChars<std::uint64_t>(strText.substr(2), 16);
}

}  // namespace

template <>
double ParseFormulaNumber<double>(const FORMULA_LITERAL& objLiteral) {
    if (objLiteral.Text == "E") {
        return std::numbers::e;
    }
    if (objLiteral.Text == "PI") {
        return std::numbers::pi;
    }
    if (IsHexadecimal(objLiteral.Text)) {
        return static_cast<double>(ParseHexadecimal(objLiteral.Text));
    }
    return FromChars<double>(objLiteral.Text);
}

template <>
std::int64_t ParseFormulaNumber<std::int64_t>(const FORMULA_LITERAL& objLiteral) {
    if (IsHexadecimal(objLiteral.Text)) {
        return static_cast<std::int64_t>(ParseHexadecimal(objLiteral.Text));
    }
    if (objLiteral.Text.find_first_not_of("0123456789") != std::string_view::npos) {
        const double fValue = ParseFormulaNumber<double>(objLiteral);
        if (fValue != std::floor(fValue)) {
            throw CFormulaFault("a number with a fraction can't stand in a formula of integers");
        }
        return ConvertToInteger(fValue);
    }
    constexpr auto kMax = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const auto nValue = FromChars<std::uint64_t>(objLiteral.Text);
    if (nValue > kMax + (objLiteral.IsBehindMinus ? 1U : 0U)) {
        throw CFormulaFault("the number doesn't fit into 64 bits");
    }
    return static_cast<std::int64_t>(nValue);
}

}  // namespace GenApi_3_0
