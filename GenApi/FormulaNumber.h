#pragma once

#include <string_view>

namespace GenApi_3_0 {

/// A number as it stands in a formula.
struct FORMULA_LITERAL {
    std::string_view Text;       ///< a Number token, "E" or "PI"; a view of the source
    bool IsBehindMinus = false;  ///< a unary minus stands before it: 2^63 is then within the range of the integers
};

/// The value of a literal, for std::int64_t and double.
/// @throws CFormulaFault  the number doesn't fit the type: beyond 64 bits, with a fraction among integers
template <class Value>
Value ParseFormulaNumber(const FORMULA_LITERAL& objLiteral);

}  // namespace GenApi_3_0
