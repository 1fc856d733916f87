#pragma once

#include <vector>

#include "GenApi/FormulaNames.h"
#include "GenApi/FormulaProgram.h"
#include "GenApi/FormulaSource.h"

namespace GenApi_3_0 {

/// A program without the values of its literals, which depend on the arithmetic.
struct COMPILED_FORMULA {
    FORMULA_PROGRAM Program;
    std::vector<FORMULA_LITERAL_USE> Literals;  ///< views of the source
};

/// Compiles a formula and the Expressions that it needs, each once. Takes time and memory in proportion to the length
/// of the texts, which kMaxFormulaLength bounds.
/// @throws  what the constructor of CFormula throws, but for errors of the literals' values
COMPILED_FORMULA CompileFormula(const FORMULA_SOURCE& objSource);

}  // namespace GenApi_3_0
