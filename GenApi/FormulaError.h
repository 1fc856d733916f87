#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace GenApi_3_0 {

/// An operation that has no result for its operands, or a number that can't be had. It never leaves the formula files:
/// who knows the position in the text turns it into an exception of the family.
class CFormulaFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One text of a formula: the formula itself (no Name) or one of its Constants or Expressions. Views only.
struct FORMULA_TEXT {
    std::string_view Name;
    std::string_view Text;
};

/// "position 7 of the formula" or "position 7 of Expression X". nPosition counts from 0, the text from 1.
std::string DescribeFormulaPosition(std::string_view strName, std::size_t nPosition);

/// Throws GenICam_3_0::InvalidArgumentException: what is wrong, where, and the text near it, cut to a readable length.
[[noreturn]] void ThrowFormulaTextError(const FORMULA_TEXT& objText, std::size_t nPosition, const std::string& strWhat);

/// Throws GenICam_3_0::LogicalErrorException: Expressions that need each other, named along the path.
[[noreturn]] void ThrowFormulaCircle(const std::string& strPath);

/// Throws GenICam_3_0::InvalidArgumentException: an evaluation was handed the wrong number of values.
[[noreturn]] void ThrowFormulaValueCount(std::size_t nGiven, std::size_t nWanted);

/// Throws GenICam_3_0::RuntimeException: an evaluation has no result.
[[noreturn]] void ThrowFormulaRunError(const std::string& strWhat);

}  // namespace GenApi_3_0
