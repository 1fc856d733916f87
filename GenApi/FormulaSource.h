#pragma once

#include <string>
#include <vector>

namespace GenApi_3_0 {

/// A name that a formula may use in place of a text: a `Constant` (a number) or an `Expression` (a formula of its own).
struct FORMULA_DEFINITION {
    std::string Name;
    std::string Text;
};

/// A formula as a description gives it, XML already unescaped. White space and line ends may stand between any tokens.
///
/// A name in the text is looked up among Variables, Constants and Expressions, then as E or PI. `VAR.Min`, `VAR.Enum`,
/// `VAR.Entry.Name` and the like count as variables when either the whole name or the part before the first dot is one
/// of Variables. Names are told apart by case; the names of functions are taken in either case.
struct FORMULA_SOURCE {
    std::string Text;
    std::vector<std::string> Variables;
    std::vector<FORMULA_DEFINITION> Constants;
    std::vector<FORMULA_DEFINITION> Expressions;
};

}  // namespace GenApi_3_0
