#include "GenApi/FormulaParser.h"

#include <algorithm>
#include <utility>

#include "GenApi/FormulaLimits.h"

namespace GenApi_3_0 {

CFormulaParser::CFormulaParser(const FORMULA_TEXT& objText, CFormulaNames& objNames,
                               std::vector<FORMULA_STEP>& vecSteps)
    : m_objText(objText), m_objNames(objNames), m_objLexer(objText), m_objWriter(vecSteps) {}

void CFormulaParser::Parse() {
    try {
        m_objNames.CountLength(m_objText.Text);
        do {
            m_objToken = m_objLexer.Next();
            if (m_bWantsOperand) {
                TakeOperand();
            } else {
                TakeBehindOperand();
            }
        } while (m_objToken.Kind != EFormulaToken::End);
    } catch (const CFormulaFault& objFault) {
        Refuse(objFault.what());
    }
}

void CFormulaParser::TakeOperand() {
    const bool bBehindMinus = std::exchange(m_bBehindMinus, false);
    const std::size_t nPosition = m_objToken.Position;
    switch (m_objToken.Kind) {
        case EFormulaToken::Number:
            m_objWriter.Write(EFormulaOperation::PushLiteral, nPosition,
                              m_objNames.AddLiteral({m_objToken.Text, bBehindMinus}, m_objText, nPosition));
            m_bWantsOperand = false;
            break;
        case EFormulaToken::Name:
            TakeName();
            break;
        case EFormulaToken::OpenParenthesis:
            Push({EOpen::Parenthesis, 0, nPosition});
            break;
        case EFormulaToken::Plus:  // changes nothing
            break;
        case EFormulaToken::Minus:
            m_bBehindMinus = true;
            Push({EOpen::Unary, kUnaryPrecedence, nPosition, EFormulaOperation::Negate});
            break;
        case EFormulaToken::Complement:
            Push({EOpen::Unary, kUnaryPrecedence, nPosition, EFormulaOperation::Complement});
            break;
        case EFormulaToken::Not:
            Push({EOpen::Unary, kUnaryPrecedence, nPosition, EFormulaOperation::Not});
            break;
        default:
            Refuse("a value is missing");
    }
}

void CFormulaParser::TakeName() {
    const std::size_t nPosition = m_objToken.Position;
    if (m_objLexer.IsCallNext()) {
        const FORMULA_FUNCTION* pFunction = FindFunction(m_objToken.Text);
        if (pFunction == nullptr) {
            Refuse("no function has this name");
        }
        m_objLexer.Next();
        Push({EOpen::Call, 0, nPosition, {}, pFunction});
        return;
    }
    const FORMULA_NAME objName = m_objNames.Use(m_objToken.Text, m_objText, nPosition);
    m_bWantsOperand = false;
    switch (objName.Kind) {
        case EFormulaName::Variable:
            m_objWriter.Write(EFormulaOperation::PushVariable, nPosition, objName.Index);
            break;
        case EFormulaName::Constant:
            m_objWriter.Write(EFormulaOperation::PushLiteral, nPosition, objName.Index);
            if (objName.IsNegated) {
                m_objWriter.Write(EFormulaOperation::Negate, nPosition);
            }
            break;
        case EFormulaName::Expression:
            Refer(objName.Index);
            m_objWriter.Write(EFormulaOperation::PushExpression, nPosition, objName.Index);
            break;
    }
}

void CFormulaParser::TakeBehindOperand() {
    if (const FORMULA_OPERATOR* pOperator = FindBinaryOperator(m_objToken.Kind)) {
        TakeBinary(*pOperator);
        return;
    }
    switch (m_objToken.Kind) {
        case EFormulaToken::Question:
            CloseWhile(kTernaryPrecedence + 1);
            Push({.Kind = EOpen::Question,
                  .Precedence = 0,
                  .Position = m_objToken.Position,
                  .Jump = m_objWriter.WriteJump(EFormulaOperation::JumpIfFalse, m_objToken.Position)});
            m_bWantsOperand = true;
            break;
        case EFormulaToken::Colon:
            TakeColon();
            break;
        case EFormulaToken::Comma:
            TakeComma();
            break;
        case EFormulaToken::CloseParenthesis:
            TakeCloseParenthesis();
            break;
        case EFormulaToken::End:
            TakeEnd();
            break;
        default:
            Refuse("an operator is missing");
    }
}

void CFormulaParser::TakeBinary(const FORMULA_OPERATOR& objOperator) {
    const bool bGroupsFromRight = objOperator.Precedence == kPowerPrecedence;
    CloseWhile(bGroupsFromRight ? objOperator.Precedence + 1 : objOperator.Precedence);
    OPEN_OPERATOR objOpen{EOpen::Binary, objOperator.Precedence, m_objToken.Position, objOperator.Operation};
    if (objOperator.Token == EFormulaToken::And || objOperator.Token == EFormulaToken::Or) {
        objOpen.Kind = objOperator.Token == EFormulaToken::And ? EOpen::And : EOpen::Or;
        objOpen.Jump = m_objWriter.WriteJump(objOperator.Operation, m_objToken.Position);
    }
    Push(objOpen);
    m_bWantsOperand = true;
}

void CFormulaParser::TakeColon() {
    OPEN_OPERATOR& objTop = TopAfterClosing("':' without '?'");
    if (objTop.Kind != EOpen::Question) {
        Refuse("':' without '?'");
    }
    const std::size_t nEnd = m_objWriter.WriteJump(EFormulaOperation::Jump, m_objToken.Position);
    m_objWriter.LetArrive(objTop.Jump);
    m_objWriter.BeginOtherBranch();
    // From here on it is an operator whose right side is open.
    objTop.Kind = EOpen::Colon;
    objTop.Precedence = kTernaryPrecedence;
    objTop.Jump = nEnd;
    m_bWantsOperand = true;
}

void CFormulaParser::TakeComma() {
    OPEN_OPERATOR& objTop = TopAfterClosing("',' outside a call");
    if (objTop.Kind != EOpen::Call) {
        Refuse("',' outside a call");
    }
    if (++objTop.Count == 2 || objTop.Function->Operation == objTop.Function->OperationOfTwo) {
        Refuse("too many arguments");
    }
    m_bWantsOperand = true;
}

void CFormulaParser::TakeCloseParenthesis() {
    const OPEN_OPERATOR objTop = TopAfterClosing("')' without '('");
    if (objTop.Kind == EOpen::Question) {
        Refuse("'?' without ':'");
    }
    if (objTop.Kind == EOpen::Call) {
        m_objWriter.Write(objTop.Count == 0 ? objTop.Function->Operation : objTop.Function->OperationOfTwo,
                          objTop.Position);
    }
    m_vecOpen.pop_back();
}

void CFormulaParser::TakeEnd() {
    CloseWhile(kTernaryPrecedence);
    if (!m_vecOpen.empty()) {
        m_objToken.Position = m_vecOpen.back().Position;
        Refuse(m_vecOpen.back().Kind == EOpen::Question ? "'?' without ':'" : "'(' without ')'");
    }
    m_objWriter.Write(EFormulaOperation::Return, m_objToken.Position);
}

void CFormulaParser::Push(const OPEN_OPERATOR& objOpen) {
    if (m_vecOpen.size() == kMaxOpenOperators) {
        Refuse("nested too deep");
    }
    m_vecOpen.push_back(objOpen);
}

/// Closes the operators on top that bind as tightly as nPrecedence or tighter.
void CFormulaParser::CloseWhile(int nPrecedence) {
    while (!m_vecOpen.empty() && m_vecOpen.back().Precedence >= nPrecedence) {
        CloseTop();
    }
}

void CFormulaParser::CloseTop() {
    const OPEN_OPERATOR objOpen = m_vecOpen.back();
    m_vecOpen.pop_back();
    switch (objOpen.Kind) {
        case EOpen::Unary:
        case EOpen::Binary:
            m_objWriter.Write(objOpen.Operation, objOpen.Position);
            break;
        case EOpen::And:
        case EOpen::Or:
            m_objWriter.Write(EFormulaOperation::ToBool, objOpen.Position);
            m_objWriter.LetArrive(objOpen.Jump);
            break;
        case EOpen::Colon:
            m_objWriter.LetArrive(objOpen.Jump);
            break;
        default:
            break;
    }
}

CFormulaParser::OPEN_OPERATOR& CFormulaParser::TopAfterClosing(const char* pUnmatched) {
    CloseWhile(kTernaryPrecedence);
    if (m_vecOpen.empty()) {
        Refuse(pUnmatched);
    }
    return m_vecOpen.back();
}

void CFormulaParser::Refer(std::size_t nExpression) {
    const auto itKnown = std::find_if(m_vecReferences.begin(), m_vecReferences.end(),
                                      [=](const auto& obj) { return obj.Expression == nExpression; });
    if (itKnown == m_vecReferences.end()) {
        m_vecReferences.push_back({nExpression, m_objWriter.GetWaiting()});
    } else {
        itKnown->Waiting = std::max(itKnown->Waiting, m_objWriter.GetWaiting());
    }
}

void CFormulaParser::Refuse(const char* pWhat) const {
    ThrowFormulaTextError(m_objText, m_objToken.Position, pWhat);
}

}  // namespace GenApi_3_0
