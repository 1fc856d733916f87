#include "GenApi/FormulaWriter.h"

#include <algorithm>
#include <string>

#include "GenApi/FormulaError.h"
#include "GenApi/FormulaLimits.h"

namespace GenApi_3_0 {

namespace {

bool AddsValue(EFormulaOperation nOperation) {
    return nOperation <= EFormulaOperation::PushExpression;
}

bool TakesValue(EFormulaOperation nOperation) {
    return nOperation >= EFormulaOperation::RoundTo || nOperation == EFormulaOperation::JumpIfFalse ||
           nOperation == EFormulaOperation::AndElseJump || nOperation == EFormulaOperation::OrElseJump;
}

}  // namespace

void CFormulaWriter::Write(EFormulaOperation nOperation, std::size_t nPosition, std::size_t nOperand) {
    // The numbers fit: all of them are bounded by the length of the texts.
    m_vecSteps.push_back({nOperation, static_cast<std::uint32_t>(nOperand), static_cast<std::uint32_t>(nPosition)});
    if (TakesValue(nOperation)) {
        --m_nWaiting;
    } else if (AddsValue(nOperation)) {
        m_nMostWaiting = std::max(m_nMostWaiting, ++m_nWaiting);
        if (m_nMostWaiting > kMaxValuesAtOnce) {
            throw CFormulaFault("more than " + std::to_string(kMaxValuesAtOnce) + " values wait for their operators");
        }
    }
}

std::size_t CFormulaWriter::WriteJump(EFormulaOperation nOperation, std::size_t nPosition) {
    Write(nOperation, nPosition);
    return m_vecSteps.size() - 1;
}

void CFormulaWriter::LetArrive(std::size_t nJump) {
    m_vecSteps[nJump].Operand = static_cast<std::uint32_t>(m_vecSteps.size());
}

}  // namespace GenApi_3_0
