#pragma once

#include <cstddef>
#include <string_view>

#include "GenApi/FormulaProgram.h"
#include "GenApi/FormulaToken.h"

namespace GenApi_3_0 {

/// How tightly the operators bind; an operator takes its operands before a looser one does.
inline constexpr int kTernaryPrecedence = 1;
inline constexpr int kUnaryPrecedence = 12;
inline constexpr int kPowerPrecedence = 13;

struct FORMULA_OPERATOR {
    EFormulaToken Token;
    int Precedence;
    EFormulaOperation Operation;  ///< of && and ||: the jump around the right side
};

struct FORMULA_FUNCTION {
    std::string_view Name;
    EFormulaOperation Operation;
    EFormulaOperation OperationOfTwo;  ///< with a second argument, else Operation again
};

/// The operator between two operands that a token stands for, or null.
const FORMULA_OPERATOR* FindBinaryOperator(EFormulaToken nToken);

/// The function of that name, letters in either case, or null.
const FORMULA_FUNCTION* FindFunction(std::string_view strName);

}  // namespace GenApi_3_0
