#pragma once

#include <cstdint>

#include "GenApi/FormulaProgram.h"

namespace GenApi_3_0 {

// The operations of formulas with one and two operands, in both arithmetics. What isn't defined for its operands throws
// CFormulaFault; nothing here is ever undefined. CFormula tells which rules hold in which arithmetic.

/// Cuts towards zero. @throws CFormulaFault  not a number, or outside the range of 64-bit integers
std::int64_t ConvertToInteger(double fValue);

std::int64_t ApplyToOne(EFormulaOperation nOperation, std::int64_t nValue);
double ApplyToOne(EFormulaOperation nOperation, double fValue);

std::int64_t ApplyToTwo(EFormulaOperation nOperation, std::int64_t nLeft, std::int64_t nRight);
double ApplyToTwo(EFormulaOperation nOperation, double fLeft, double fRight);

}  // namespace GenApi_3_0
