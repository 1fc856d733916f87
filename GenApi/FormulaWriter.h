#pragma once

#include <cstddef>
#include <vector>

#include "GenApi/FormulaProgram.h"

namespace GenApi_3_0 {

/// Writes the steps of one text behind those already there and follows how many values wait on the stack.
///
/// One for each text; the steps it writes to must outlive it.
class CFormulaWriter {
public:
    explicit CFormulaWriter(std::vector<FORMULA_STEP>& vecSteps) : m_vecSteps(vecSteps) {}

    /// @throws CFormulaFault  more than kMaxValuesAtOnce values would wait
    void Write(EFormulaOperation nOperation, std::size_t nPosition, std::size_t nOperand = 0);

    /// Writes a jump whose end isn't known yet. @return  what LetArrive takes
    std::size_t WriteJump(EFormulaOperation nOperation, std::size_t nPosition);

    /// The jump ends at the step that is written next.
    void LetArrive(std::size_t nJump);

    /// A branch begins that starts with the values that waited before the last one: the other one's result.
    void BeginOtherBranch() { --m_nWaiting; }

    std::size_t GetWaiting() const { return m_nWaiting; }
    std::size_t GetMostWaiting() const { return m_nMostWaiting; }

private:
    std::vector<FORMULA_STEP>& m_vecSteps;
    std::size_t m_nWaiting = 0;
    std::size_t m_nMostWaiting = 0;
};

}  // namespace GenApi_3_0
