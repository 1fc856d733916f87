#pragma once

#include <cstddef>
#include <vector>

#include "GenApi/FormulaError.h"
#include "GenApi/FormulaLexer.h"
#include "GenApi/FormulaNames.h"
#include "GenApi/FormulaOperator.h"
#include "GenApi/FormulaToken.h"
#include "GenApi/FormulaWriter.h"

namespace GenApi_3_0 {

/// An Expression that a text refers to and the most values that wait at such a place.
struct FORMULA_REFERENCE {
    std::size_t Expression;
    std::size_t Waiting;
};

/// Turns one text into steps, with a stack of open operators of its own in place of recursion: how deep a text nests
/// costs heap up to a limit, never call stack.
///
/// One for each text.
class CFormulaParser {
public:
    CFormulaParser(const FORMULA_TEXT& objText, CFormulaNames& objNames, std::vector<FORMULA_STEP>& vecSteps);

    /// Writes the steps of the whole text and a Return.
    /// @throws GenICam_3_0::InvalidArgumentException  the text isn't a formula or is beyond a limit
    void Parse();

    /// After Parse: the Expressions referred to, each once.
    const std::vector<FORMULA_REFERENCE>& GetReferences() const { return m_vecReferences; }
    std::size_t GetMostWaiting() const { return m_objWriter.GetMostWaiting(); }

private:
    enum class EOpen : std::uint8_t { Parenthesis, Call, Question, Colon, And, Or, Unary, Binary };

    struct OPEN_OPERATOR {
        EOpen Kind;
        int Precedence;  // 0: only its closing counterpart closes it
        std::size_t Position;
        EFormulaOperation Operation{};               // Unary, Binary
        const FORMULA_FUNCTION* Function = nullptr;  // Call
        std::size_t Count = 0;                       // Call: arguments before the one that is open
        std::size_t Jump = 0;                        // Question, Colon, And, Or
    };

    void TakeOperand();
    void TakeName();
    void TakeBehindOperand();
    void TakeBinary(const FORMULA_OPERATOR& objOperator);
    void TakeColon();
    void TakeComma();
    void TakeCloseParenthesis();
    void TakeEnd();
    void Push(const OPEN_OPERATOR& objOpen);
    void CloseWhile(int nPrecedence);
    void CloseTop();
    OPEN_OPERATOR& TopAfterClosing(const char* pUnmatched);
    void Refer(std::size_t nExpression);
    [[noreturn]] void Refuse(const char* pWhat) const;

    FORMULA_TEXT m_objText;
    CFormulaNames& m_objNames;
    CFormulaLexer m_objLexer;
    CFormulaWriter m_objWriter;
    FORMULA_TOKEN m_objToken;
    bool m_bWantsOperand = true;
    bool m_bBehindMinus = false;
    std::vector<OPEN_OPERATOR> m_vecOpen;
    std::vector<FORMULA_REFERENCE> m_vecReferences;
};

}  // namespace GenApi_3_0
