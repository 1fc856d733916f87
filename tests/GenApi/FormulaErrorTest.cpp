#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/Formula.h"
#include "GenApi/FormulaLimits.h"
#include "GenApi/GCException.h"

namespace {

using GenApi_3_0::CFloatFormula;
using GenApi_3_0::CFormula;
using GenApi_3_0::CIntegerFormula;
using GenApi_3_0::FORMULA_SOURCE;
using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::LogicalErrorException;
using GenICam_3_0::RuntimeException;
using testing::AllOf;
using testing::HasSubstr;

template <class Exception, class Function>
std::string TextOf(Function function) {
    try {
        function();
    } catch (const Exception& objException) {
        return objException.GetDescription();
    }
    return "nothing was thrown";
}

template <class Value>
std::string CompileError(const FORMULA_SOURCE& objSource) {
    return TextOf<InvalidArgumentException>([&] { CFormula<Value>{objSource}; });
}

struct Case {
    const char* pText;
    const char* pWhat;
    const char* pPosition;
};

TEST(FormulaError, TextThatIsNoFormulaIsRefusedWithItsPosition) {
    const Case arrCases[] = {
        {"", "a value is missing", "position 1 of the formula"},
        {"A +", "a value is missing", "position 4 "},
        {"A + * B", "a value is missing", "position 5 "},
        {"A B", "an operator is missing", "position 3 "},
        {"A (B)", "no function has this name", "position 1 "},
        {"1 + (A * (B + 1)", "'(' without ')'", "position 5 "},
        {"A)", "')' without '('", "position 2 "},
        {"()", "a value is missing", "position 2 "},
        {"ABS(1, 2)", "too many arguments", "position 6 "},
        {"ROUND(1, 2, 3)", "too many arguments", "position 11 "},
        {"ABS(A", "'(' without ')'", "position 1 "},
        {"A, B", "',' outside a call", "position 2 "},
        {"A ? B", "'?' without ':'", "position 3 "},
        {"(A ? B)", "'?' without ':'", "position 7 "},
        {"A : B", "':' without '?'", "position 3 "},
        {"A ? B : 1 : 2", "':' without '?'", "position 11 "},
        {"A # B", "begins with '#'", "position 3 "},
        {"A \x80", "begins with byte 0x80", "position 3 "},
        {"A + UNKNOWN", "\"UNKNOWN\" is no variable", "position 5 "},
        {"A.", "begins with '.'", "position 2 "},
        {"0x", "malformed number", "position 1 "},
        {"1.2.3", "malformed number", "position 1 "},
        {"0x10000000000000000", "doesn't fit into 64 bits", "position 1 "},
        {"1e999", "doesn't fit into 64 bits", "position 1 "},
    };
    for (const auto& objCase : arrCases) {
        const FORMULA_SOURCE objSource{objCase.pText, {"A", "B"}, {}, {}};
        const auto objExpected = AllOf(HasSubstr(objCase.pWhat), HasSubstr(objCase.pPosition));
        EXPECT_THAT(CompileError<std::int64_t>(objSource), objExpected) << objCase.pText;
        EXPECT_THAT(CompileError<double>(objSource), objExpected) << objCase.pText;
    }
}

TEST(FormulaError, NumbersThatAreNoIntegersAreRefusedAmongIntegers) {
    const Case arrCases[] = {
        {"2 * 0.5", "fraction", "position 5 "},
        {"2 + E", "fraction", "position 5 "},
        {"9223372036854775808", "64 bits", "position 1 "},
        {"-9223372036854775809", "64 bits", "position 2 "},
        {"1e19", "64-bit integer", "position 1 "},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_THAT(CompileError<std::int64_t>({objCase.pText, {}, {}, {}}),
                    AllOf(HasSubstr(objCase.pWhat), HasSubstr(objCase.pPosition)))
            << objCase.pText;
    }
}

TEST(FormulaError, FaultsInConstantsAndExpressionsNameThem) {
    EXPECT_THAT(CompileError<double>({"2 * K", {}, {{"K", "12 13"}}, {}}), HasSubstr("position 1 of the formula's K"));
    EXPECT_THAT(CompileError<double>({"2 * K", {}, {{"K", "  "}}, {}}), HasSubstr("Constant that isn't a number"));
    EXPECT_THAT(CompileError<std::int64_t>({"2 * K", {}, {{"K", "-1.5"}}, {}}),
                HasSubstr("position 2 of the formula's K"));
    EXPECT_THAT(CompileError<double>({"X", {}, {}, {{"X", "1 + ?"}}}), HasSubstr("position 5 of the formula's X"));
    EXPECT_THAT(CompileError<double>({"X", {"X"}, {{"X", "1"}}, {}}), HasSubstr("\"X\" stands for two things"));
    const CIntegerFormula objFormula({"1 + X", {"A"}, {}, {{"Y", "10 / A"}, {"X", "Y + 1"}}});
    EXPECT_THAT(TextOf<RuntimeException>([&] { objFormula.Evaluate(std::vector<std::int64_t>{0}); }),
                HasSubstr("division by zero at position 4 of the formula's Y"));
}

TEST(FormulaError, ExpressionsInACircleAreRefusedWithTheirNames) {
    const auto CircleOf = [](const FORMULA_SOURCE& objSource) {
        return TextOf<LogicalErrorException>([&] { CIntegerFormula{objSource}; });
    };
    EXPECT_THAT(CircleOf({"X", {}, {}, {{"X", "X + 1"}}}), HasSubstr("X -> X"));
    EXPECT_THAT(CircleOf({"1 + X", {}, {}, {{"Z", "0 ? X : Y"}, {"Y", "Z"}, {"X", "1 + Y"}}}),
                AllOf(HasSubstr("Y -> Z"), Not(HasSubstr("..."))));
    FORMULA_SOURCE objLong{"X0", {}, {}, {}};
    for (int i = 0; i < 500; ++i) {
        objLong.Expressions.push_back({"X" + std::to_string(i), "X" + std::to_string((i + 1) % 500)});
    }
    EXPECT_THAT(CircleOf(objLong), AllOf(HasSubstr("X0 -> X1 -> "), HasSubstr("... -> X0")));
}

TEST(FormulaError, EvaluationWithoutAResultThrowsWithThePosition) {
    const Case arrBoth[] = {
        {"A / C", "division by zero", "position 3 "},
        {"A % C", "modulo by zero", "position 3 "},
        {"A << 64", "shift by 64 bits", "position 3 "},
        {"A << -1", "shift by -1 bits", "position 3 "},
        {"1 + SQRT(-A)", "", "position 5 "},
        {"LN(C)", "logarithm", "position 1 "},
        {"ASIN(A)", "domain", "position 1 "},
        {"C ** -A", "0 to a negative power", "position 3 "},
        {"ROUND(A, -400)", "precision", "position 1 "},
    };
    const Case arrIntegers[] = {
        {"(-9223372036854775808) / -1", "doesn't fit into 64 bits", "position 24 "},
        {"ABS(-9223372036854775808)", "doesn't fit into 64 bits", "position 1 "},
        {"EXP(A * 10)", "doesn't fit into a 64-bit integer", "position 1 "},
        {"ROUND(1, -19)", "-18 is the lowest", "position 1 "},
    };
    const Case arrFloats[] = {
        {"1e19 & 1", "doesn't fit into a 64-bit integer", "position 6 "},
        {"9223372036854775808 | 0", "doesn't fit into a 64-bit integer", "position 21 "},
        {"(-A) ** 0.5", "no result", "position 6 "},
        {"1e308 * 10 - 1e308 * 10", "no result", "position 12 "},
        {"1e308 * 10 % 2", "no result", "position 12 "},
    };
    const auto Expect = [](auto value, const Case& objCase) {
        using Value = decltype(value);
        const CFormula<Value> objFormula({objCase.pText, {"A", "C"}, {}, {}});
        std::vector<Value> vecValues;
        for (const auto& strName : objFormula.GetVariableNames()) {
            vecValues.push_back(strName == "A" ? Value{7} : Value{0});
        }
        EXPECT_THAT(TextOf<RuntimeException>([&] { objFormula.Evaluate(vecValues); }),
                    AllOf(HasSubstr(objCase.pWhat), HasSubstr(objCase.pPosition)))
            << objCase.pText;
    };
    for (const auto& objCase : arrBoth) {
        Expect(std::int64_t{}, objCase);
        Expect(double{}, objCase);
    }
    for (const auto& objCase : arrIntegers) {
        Expect(std::int64_t{}, objCase);
    }
    for (const auto& objCase : arrFloats) {
        Expect(double{}, objCase);
    }
}

std::string Repeat(const std::string& strText, std::size_t nCount) {
    std::string strResult;
    while (nCount-- > 0) {
        strResult += strText;
    }
    return strResult;
}

TEST(FormulaError, HostileFormulasEndInALimit) {
    using GenApi_3_0::kMaxFormulaLength;
    using GenApi_3_0::kMaxValuesAtOnce;
    const struct {
        std::string strText;
        const char* pWhat;
    } arrCases[] = {
        {Repeat("1+", 500000) + "1", "longer than"},
        {Repeat(" ", kMaxFormulaLength) + "1", "longer than"},
        {Repeat("(", 1000000), "longer than"},
        {Repeat("(", 10000) + "1" + Repeat(")", 10000), "nested too deep"},
        {Repeat("-", 100000) + "1", "nested too deep"},
        {Repeat("1?", 10000) + "1" + Repeat(":1", 10000), "nested too deep"},
        {Repeat("0?1:", 30000) + "1", "nested too deep"},
        {Repeat("ABS(", 10000) + "1" + Repeat(")", 10000), "nested too deep"},
        {Repeat("2**", 10000) + "1", "values wait"},
        {Repeat("1+(", kMaxValuesAtOnce) + "1" + Repeat(")", kMaxValuesAtOnce), "values wait"},
        {Repeat("A", 100000), "is no variable"},
        {Repeat("9", 100000), "64 bits"},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_THAT(CompileError<std::int64_t>({objCase.strText, {}, {}, {}}),
                    AllOf(HasSubstr(objCase.pWhat),
                          testing::ResultOf([](const auto& str) { return str.size(); }, testing::Lt(300U))))
            << objCase.strText.substr(0, 20);
    }
    FORMULA_SOURCE objNames{"X0", {}, {}, {}};
    for (std::size_t i = 0; i <= GenApi_3_0::kMaxFormulaNames; ++i) {
        objNames.Variables.push_back("X" + std::to_string(i));
    }
    EXPECT_THAT(CompileError<std::int64_t>(objNames), HasSubstr("names"));
    const std::string strDeepest = Repeat("1+(", kMaxValuesAtOnce - 1) + "1" + Repeat(")", kMaxValuesAtOnce - 1);
    EXPECT_EQ(CIntegerFormula({strDeepest, {}, {}, {}}).Evaluate({}), static_cast<std::int64_t>(kMaxValuesAtOnce));
}

TEST(FormulaError, ExpressionsShareTheLimitsOfTheirFormula) {
    // Each text alone is fine: together they need more values at once, more text, more Expressions than there may be.
    FORMULA_SOURCE objDeep{"X0", {}, {}, {{"X6", "1"}}};
    FORMULA_SOURCE objLong{"1", {}, {}, {}};
    FORMULA_SOURCE objMany{"1", {}, {}, {}};
    for (int i = 0; i < 6; ++i) {
        const std::string strNext = "X" + std::to_string(i + 1);
        objDeep.Expressions.push_back({"X" + std::to_string(i), Repeat("1+(", 100) + strNext + Repeat(")", 100)});
    }
    for (int i = 0; i < 513; ++i) {
        const std::string strName = "X" + std::to_string(i);
        if (i < 512) {
            objLong.Text += "+" + strName;
            objLong.Expressions.push_back({strName, Repeat(" ", 300) + "1"});
        }
        objMany.Text += "+" + strName;
        objMany.Expressions.push_back({strName, "1"});
    }
    EXPECT_THAT(CompileError<std::int64_t>(objDeep), HasSubstr("values wait"));
    EXPECT_THAT(CompileError<std::int64_t>(objLong), HasSubstr("longer than"));
    EXPECT_THAT(CompileError<std::int64_t>(objMany), HasSubstr("more than 512 Expressions"));
    objMany.Text = objMany.Text.substr(0, objMany.Text.rfind('+'));
    EXPECT_EQ(CIntegerFormula(objMany).Evaluate({}), 513);
}

}  // namespace
