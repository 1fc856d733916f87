#include "GenApi/FormulaOperator.h"

#include <algorithm>
#include <iterator>

namespace GenApi_3_0 {

namespace {

using Operation = EFormulaOperation;
using Token = EFormulaToken;

constexpr FORMULA_OPERATOR kOperators[] = {
    {Token::Or, Operation::OrElseJump, 2},
    {Token::And, Operation::AndElseJump, 3},
    {Token::BitOr, Operation::BitOr, 4},
    {Token::BitXor, Operation::BitXor, 5},
    {Token::BitAnd, Operation::BitAnd, 6},
    {Token::Equal, Operation::Equal, 7},
    {Token::NotEqual, Operation::NotEqual, 7},
    {Token::Less, Operation::Less, 8},
    {Token::Greater, Operation::Greater, 8},
    {Token::LessOrEqual, Operation::LessOrEqual, 8},
    {Token::GreaterOrEqual, Operation::GreaterOrEqual, 8},
    {Token::ShiftLeft, Operation::ShiftLeft, 9},
    {Token::ShiftRight, Operation::ShiftRight, 9},
    {Token::Plus, Operation::Add, 10},
    {Token::Minus, Operation::Subtract, 10},
    {Token::Times, Operation::Multiply, 11},
    {Token::Divide, Operation::Divide, 11},
    {Token::Modulo, Operation::Modulo, 11},
    {Token::Power, Operation::Power, kPowerPrecedence},
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
