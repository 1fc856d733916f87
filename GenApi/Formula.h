#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "GenApi/FormulaProgram.h"
#include "GenApi/FormulaSource.h"

namespace GenApi_3_0 {

/// A formula compiled once into a flat program: evaluation neither recurses nor allocates.
///
/// Operators, from the loosest: `?:`, `||`, `&&`, `|`, `^`, `&`, `=` `<>` (also `==` `!=`), `<` `>` `<=` `>=`,
/// `<<` `>>`, `+` `-`, `*` `/` `%`, unary `+` `-` `~` `!`, and `**`, which like `?:` groups from the right, so that
/// -2**2 is -4. Functions: NEG ABS SGN SQRT TRUNC FLOOR CEIL ROUND(x[, decimals]) SIN COS TAN ASIN ACOS ATAN EXP LN LG.
/// Comparisons and logic give 1 or 0. Only the taken branch of `?:` and the needed side of `&&` and `||` are evaluated,
/// and each Expression at most once.
///
/// Value is the arithmetic:
/// - std::int64_t: + - * ** and << wrap in two's complement; / and % round towards zero; >> keeps the sign; a function
///   without an integer result is computed in double and cut towards zero. A literal with a fraction, E and PI are
///   refused. A hexadecimal literal up to 64 bits is its bit pattern.
/// - double: IEEE arithmetic; the bit operators and shifts cut their operands towards zero to 64-bit integers first.
///
/// Immutable after construction: any number of threads may evaluate at once. The limits stand in FormulaLimits.h.
template <class Value>
class CFormula {
public:
    /// Compiles.
    /// @throws GenICam_3_0::InvalidArgumentException  the text isn't a formula or is beyond a limit; the message gives
    ///                                                the position, counted from 1, and in which text it lies
    /// @throws GenICam_3_0::LogicalErrorException     the Expressions lead in a circle; the message names them
    explicit CFormula(const FORMULA_SOURCE& objSource);

    /// The variables that the formula and the Expressions it needs refer to, each once, members as a part of the name.
    /// Their order is that of the values handed to Evaluate. A declared variable that nothing refers to isn't here.
    const std::vector<std::string>& GetVariableNames() const { return m_objProgram.VariableNames; }

    /// @param values  one value for each of GetVariableNames, in that order
    /// @throws GenICam_3_0::RuntimeException  division or modulo by zero, INT64_MIN / -1, a shift below 0 or above 63,
    ///                                        an argument outside a function's domain, a value that doesn't fit into 64
    ///                                        bits; the message gives the position
    /// @throws GenICam_3_0::InvalidArgumentException  a number of values other than that of the names
    Value Evaluate(std::span<const Value> values) const;

private:
    FORMULA_PROGRAM m_objProgram;
    std::vector<Value> m_vecLiterals;
};

extern template class CFormula<std::int64_t>;
extern template class CFormula<double>;

using CIntegerFormula = CFormula<std::int64_t>;
using CFloatFormula = CFormula<double>;

}  // namespace GenApi_3_0
