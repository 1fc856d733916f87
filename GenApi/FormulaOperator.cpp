#include "GenApi/FormulaOperator.h"

#include <algorithm>
#include <iterator>

namespace GenApi_3_0 {

namespace {

using Operation = EFormulaOperation;
using Token = EFormulaToken;

constexpr FORMULA_OPERATOR kOperators[] = {
    {Token::Or, 2, Operation::OrElseJump},
    {Token::And, 3, Operation::AndElseJump},
    {Token::BitOr, 4, Operation::BitOr},
    {Token::BitXor, 5, Operation::BitXor},
    {Token::BitAnd, 6, Operation::BitAnd},
    {Token::Equal, 7, Operation::Equal},
    {Token::NotEqual, 7, Operation::NotEqual},
    {Token::Less, 8, Operation::Less},
    {Token::Greater, 8, Operation::Greater},
    {Token::LessOrEqual, 8, Operation::LessOrEqual},
    {Token::GreaterOrEqual, 8, Operation::GreaterOrEqual},
    {Token::ShiftLeft, 9, Operation::ShiftLeft},
    {Token::ShiftRight, 9, Operation::ShiftRight},
    {Token::Plus, 10, Operation::Add},
    {Token::Minus, 10, Operation::Subtract},
    {Token::Times, 11, Operation::Multiply},
    {Token::Divide, 11, Operation::Divide},
    {Token::Modulo, 11, Operation::Modulo},
    {Token::Power, kPowerPrecedence, Operation::Power},
};

constexpr FORMULA_FUNCTION kFunctions[] = {
    {"NEG", Operation::Negate, Operation::Negate},
    {"ABS", Operation::Absolute, Operation::Absolute},
    {"SGN", Operation::Sign, Operation::Sign},
    {"SQRT", Operation::SquareRoot, Operation::SquareRoot},
    {"TRUNC", Operation::Truncate, Operation::Truncate},
    {"FLOOR", Operation::Floor, Operation::Floor},
    {"CEIL", Operation::Ceil, Operation::Ceil},
    {"ROUND", Operation::Round, Operation::RoundTo},
    {"SIN", Operation::Sine, Operation::Sine},
    {"COS", Operation::Cosine, Operation::Cosine},
    {"TAN", Operation::Tangent, Operation::Tangent},
    {"ASIN", Operation::ArcSine, Operation::ArcSine},
    {"ACOS", Operation::ArcCosine, Operation::ArcCosine},
    {"ATAN", Operation::ArcTangent, Operation::ArcTangent},
    {"EXP", Operation::Exponential, Operation::Exponential},
    {"LN", Operation::NaturalLogarithm, Operation::NaturalLogarithm},
    {"LG", Operation::DecimalLogarithm, Operation::DecimalLogarithm},
};

char ToUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool IsSameName(std::string_view strUpper, std::string_view strName) {
    return std::equal(strUpper.begin(), strUpper.end(), strName.begin(), strName.end(),
                      [](char cUpper, char c) { return cUpper == ToUpper(c); });
}

}  // namespace

const FORMULA_OPERATOR* FindBinaryOperator(EFormulaToken nToken) {
    const auto* pFound = std::find_if(std::begin(kOperators), std::end(kOperators),
                                      [nToken](const auto& objOperator) { return objOperator.Token == nToken; });
    return pFound == std::end(kOperators) ? nullptr : pFound;
}

const FORMULA_FUNCTION* FindFunction(std::string_view strName) {
    const auto* pFound = std::find_if(std::begin(kFunctions), std::end(kFunctions), [strName](const auto& objFunction) {
        return IsSameName(objFunction.Name, strName);
    });
    return pFound == std::end(kFunctions) ? nullptr : pFound;
}

}  // namespace GenApi_3_0
