#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/Formula.h"

namespace {

using GenApi_3_0::CFloatFormula;
using GenApi_3_0::CFormula;
using GenApi_3_0::CIntegerFormula;
using GenApi_3_0::FORMULA_SOURCE;
using testing::ElementsAre;

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

/// A formula over A = 7, B = 3, C = 0 and N = -5.
template <class Value>
Value Evaluate(const std::string& strText) {
    const CFormula<Value> objFormula(FORMULA_SOURCE{strText, {"A", "B", "C", "N"}, {}, {}});
    std::vector<Value> vecValues;
    for (const auto& strName : objFormula.GetVariableNames()) {
        const auto nIndex = std::string("ABCN").find(strName);
        vecValues.push_back(std::vector<Value>{7, 3, 0, -5}.at(nIndex));
    }
    return objFormula.Evaluate(vecValues);
}

template <class Value>
struct Case {
    const char* pText;
    Value expected;
};

template <class Value, std::size_t N>
void ExpectAll(const Case<Value> (&arrCases)[N]) {
    for (const auto& objCase : arrCases) {
        EXPECT_EQ(Evaluate<Value>(objCase.pText), objCase.expected) << objCase.pText;
    }
}

TEST(IntegerFormula, OperatorsBindInTheOrderOfTheStandard) {
    const Case<std::int64_t> arrCases[] = {
        {"1 + 2 * 3", 7},
        {"(1 + 2) * 3", 9},
        {"100 / 10 / 5", 2},
        {"2 ** 3 ** 2", 512},
        {"-2 ** 2", -4},
        {"2 ** -1 * 8", 0},
        {"~1 + 1", -1},
        {"!A = 0", 1},
        {"-+-5", 5},
        {"1 << 2 + 1", 8},
        {"6 & 3 = 3", 0},
        {"5 ^ 1 & 3", 4},
        {"4 | 1 ^ 1", 4},
        {"2 | 1 && 0", 0},
        {"0 || 0 ? 1 : 2", 2},
        {"0 ? 1 : 0 ? 2 : 3", 3},
        {"1 ? 0 ? 1 : 2 : 3", 2},
        {"(0 ? 1 : 2) + 10", 12},
        {"1 ? 2 : 3 + 10", 2},
    };
    ExpectAll(arrCases);
}

TEST(IntegerFormula, ComparisonsAndLogicGiveOneOrZero) {
    const Case<std::int64_t> arrCases[] = {
        {"A = 7", 1},  {"A == 7", 1}, {"A <> 7", 0}, {"A != 7", 0}, {"A < 7", 0},
        {"A <= 7", 1}, {"A > 7", 0},  {"A >= 7", 1}, {"A<-7", 0},   {"A && B", 1},
        {"A && C", 0}, {"C || N", 1}, {"C || C", 0}, {"!N", 0},     {"!C", 1},
    };
    ExpectAll(arrCases);
}

TEST(IntegerFormula, ArithmeticIsThatOf64BitsInTwosComplement) {
    const Case<std::int64_t> arrCases[] = {
        {"7 / -2", -3},
        {"-7 % 3", -1},
        {"9223372036854775807 + 1", kMin},
        {"-9223372036854775808 - 1", kMax},
        {"-9223372036854775808 % -1", 0},
        {"9223372036854775807 * 2", -2},
        {"3037000500 ** 2", -9223372036709301616},
        {"2 ** 63", kMin},
        {"1 ** -3 + (-1) ** -3 * 10 + (-1) ** -4 * 100 + 2 ** -1", 91},
        {"0 ** 0", 1},
        {"1 << 63", kMin},
        {"-1 >> 63", -1},
        {"-1 << 4", -16},
        {"0xF0 | 0x0f", 255},
        {"0xFFFFFFFFFFFFFFFF", -1},
        {"0X8000000000000000", kMin},
        {"1e3 + 2.0", 1002},
        {"007", 7},
    };
    ExpectAll(arrCases);
}

TEST(IntegerFormula, FunctionsGiveIntegers) {
    const Case<std::int64_t> arrCases[] = {
        {"abs(N) + Abs(5)", 10},
        {"SGN(N) * 100 + SGN(C) * 10 + SGN(A)", -99},
        {"SQRT(48)", 6},
        {"SQRT(9223372036854775807)", 3037000499},
        {"SQRT(9223372030926249000)", 3037000498},  // one below the square of 3037000499
        {"TRUNC(N) + FLOOR(N) + CEIL(N) + ROUND(N)", -20},
        {"ROUND(15, -1)", 20},
        {"ROUND(-15, -1)", -20},
        {"EXP(1)", 2},
        {"SIN(0) + COS(0)", 1},
    };
    ExpectAll(arrCases);
}

TEST(FloatFormula, OperatorsAndLiteralsAreThoseOfDouble) {
    const Case<double> arrCases[] = {
        {"7 / 2", 3.5},
        {"-7.5 % 2", -1.5},
        {"2 ** 0.5 ** 2", std::pow(2.0, 0.25)},
        {"2 ** -2", 0.25},
        {".5 + 5. + 1e-1 + 2E+1", 25.6},
        {"0x10 + 0.5", 16.5},
        {"0xFFFFFFFFFFFFFFFF", 18446744073709551616.0},
        {"0.1 + 0.2 = 0.3", 0.0},
        {"0.5 ? 2.5 : 3.5", 2.5},
        {"7.9 & 3", 3.0},
        {"~0.9", -1.0},
        {"1.9 << 3.9", 8.0},
        {"1e308 * 10", std::numeric_limits<double>::infinity()},
        {"E", 2.718281828459045},
        {"PI", 3.141592653589793},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_DOUBLE_EQ(Evaluate<double>(objCase.pText), objCase.expected) << objCase.pText;
    }
}

TEST(FloatFormula, FunctionsAreThoseOfMathematics) {
    const Case<double> arrCases[] = {
        {"SGN(-0.1) * 100 + SGN(0) * 10 + SGN(0.1)", -99},
        {"SQRT(6.25)", 2.5},
        {"TRUNC(-2.7)", -2},
        {"FLOOR(-2.1)", -3},
        {"CEIL(-2.9)", -2},
        {"ROUND(-2.5)", -3},
        {"ROUND(3.14159, 2.9)", 3.14},
        {"ROUND(1250, -2)", 1300},
        {"ROUND(0.1, 300)", 0.1},
        {"SIN(PI / 6)", 0.5},
        {"COS(PI / 3)", 0.5},
        {"TAN(PI / 4)", 1},
        {"ASIN(1)", 1.5707963267948966},
        {"ACOS(0)", 1.5707963267948966},
        {"ATAN(1) * 4", 3.141592653589793},
        {"EXP(2)", 7.38905609893065},
        {"LN(E ** 3)", 3},
        {"LG(0.001)", -3},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_NEAR(Evaluate<double>(objCase.pText), objCase.expected, 1e-12) << objCase.pText;
    }
}

TEST(Formula, WhiteSpaceAndLineEndsMayStandBetweenAnyTokens) {
    EXPECT_EQ(Evaluate<std::int64_t>("\r\n\t( A\n=\r\n7 )\v?\f10 :\n\t20\n"), 10);
    EXPECT_EQ(Evaluate<std::int64_t>("ABS\n(\nN\n)"), 5);
}

TEST(Formula, OnlyTheNeededSideIsEvaluated) {
    const Case<std::int64_t> arrCases[] = {
        {"C = 0 ? 1 : A / C", 1},         {"A || A / C", 1}, {"C && A / C || B", 1}, {"C = 0 || A / C && A / C", 1},
        {"1 ? C ? A / C : 5 : A / C", 5},
    };
    ExpectAll(arrCases);
}

TEST(Formula, VariablesAreReportedOnceInTheOrderOfTheirUse) {
    const CIntegerFormula objFormula(FORMULA_SOURCE{
        "W.Max - W + W.Entry.Mono8 * (GAIN = SUM) + W.Max",
        {"GAIN", "UNUSED", "W", "W", "OFFSET"},
        {{"K", "-0x10"}},
        {{"SUM", "OFFSET + W + K"}, {"BROKEN_BUT_UNUSED", "1 +"}},
    });
    EXPECT_THAT(objFormula.GetVariableNames(), ElementsAre("W.Max", "W", "W.Entry.Mono8", "GAIN", "OFFSET"));
    const std::int64_t arrValues[] = {100, 40, 7, 29, 5};
    EXPECT_EQ(objFormula.Evaluate(arrValues), 100 - 40 + 7 + 100);
}

TEST(Formula, ConstantsAreNumbersInTheFormulasArithmetic) {
    const struct {
        const char* pText;
        double fValue;
    } arrCases[] = {{" 12 ", 12}, {"-12", -12}, {"+0x0c", 12}, {"--12", 12}, {"-0.25", -0.25}, {"1.5E2", 150}};
    for (const auto& objCase : arrCases) {
        EXPECT_EQ(CFloatFormula(FORMULA_SOURCE{"2 * K", {}, {{"K", objCase.pText}}, {}}).Evaluate({}),
                  2 * objCase.fValue);
    }
    EXPECT_EQ(CIntegerFormula(FORMULA_SOURCE{"K", {}, {{"K", "-9223372036854775808"}}, {}}).Evaluate({}), kMin);
}

TEST(Formula, ExpressionsRunWhenNeededAndSeeEachOther) {
    const CIntegerFormula objFormula(
        {"A ? GOOD : BAD", {"A"}, {}, {{"BAD", "1 / 0"}, {"GOOD", "TWICE + TWICE"}, {"TWICE", "2 * A"}}});
    EXPECT_EQ(objFormula.Evaluate(std::vector<std::int64_t>{4}), 16);
}

TEST(Formula, ExpressionsThatDoubleEachOtherCostNoMoreThanTheirText) {
    FORMULA_SOURCE objSource{"X0", {}, {}, {{"X60", "1"}}};
    for (int i = 0; i < 60; ++i) {
        const std::string strNext = "X" + std::to_string(i + 1);
        std::string strSum = strNext + " + ";
        strSum += strNext;
        objSource.Expressions.push_back({"X" + std::to_string(i), strSum});
    }
    EXPECT_EQ(CIntegerFormula(objSource).Evaluate({}), std::int64_t{1} << 60);
}

TEST(Formula, ChainsOverManyVariablesWork) {
    constexpr int kLinks = 1000;
    FORMULA_SOURCE objSource{"", {"SELECTOR"}, {}, {}};
    for (int i = 0; i < kLinks; ++i) {
        const std::string strName = "VALUE_OF_ENTRY_" + std::to_string(i);
        objSource.Variables.push_back(strName);
        objSource.Text += "(SELECTOR = " + std::to_string(i) + ") ? (" + strName + " & 0xFFFF) :\n(";
    }
    objSource.Text += "-1" + std::string(kLinks, ')');
    const CIntegerFormula objFormula(objSource);
    std::vector<std::int64_t> vecValues(kLinks + 1);
    for (std::size_t i = 1; i < vecValues.size(); ++i) {
        vecValues[i] = static_cast<std::int64_t>(3 * i);
    }
    for (const int nSelector : {0, 500, kLinks - 1, kLinks}) {
        vecValues[0] = nSelector;
        EXPECT_EQ(objFormula.Evaluate(vecValues), nSelector < kLinks ? nSelector * 3 + 3 : -1);
    }
}

}  // namespace
