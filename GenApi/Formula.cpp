#include "GenApi/Formula.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "GenApi/FormulaArithmetic.h"
#include "GenApi/FormulaCompiler.h"
#include "GenApi/FormulaError.h"
#include "GenApi/FormulaLimits.h"
#include "GenApi/FormulaNumber.h"

namespace GenApi_3_0 {

namespace {

/// One evaluation: the stack of values, the results of the Expressions that have run and where they return to. All of
/// it is local; the compiler has made sure that it suffices.
template <class Value>
class CFormulaRun {
public:
    CFormulaRun(const FORMULA_PROGRAM& objProgram, const std::vector<Value>& vecLiterals, std::span<const Value> values)
        : m_objProgram(objProgram), m_vecLiterals(vecLiterals), m_values(values) {
        for (std::size_t i = 0; i < objProgram.Expressions.size(); ++i) {
            m_arrIsKnown[i] = false;
        }
    }

    Value Run() {
        for (;;) {
            const FORMULA_STEP& objStep = m_objProgram.Steps[m_nStep];
            if (objStep.Operation >= EFormulaOperation::RoundTo) {
                --m_nWaiting;
                Top() = ApplyToTwo(objStep.Operation, Top(), m_arrWaiting[m_nWaiting]);
            } else if (objStep.Operation >= EFormulaOperation::ToBool) {
                Top() = ApplyToOne(objStep.Operation, Top());
            } else if (objStep.Operation != EFormulaOperation::Return) {
                Move(objStep);
                continue;
            } else if (!ReturnFromExpression()) {
                return Top();
            }
            ++m_nStep;
        }
    }

    /// The step that ran last.
    std::size_t GetStep() const { return m_nStep; }

private:
    /// A step that pushes or jumps: it sets the next step itself.
    void Move(const FORMULA_STEP& objStep) {
        switch (objStep.Operation) {
            case EFormulaOperation::PushLiteral:
                return Push(m_vecLiterals[objStep.Operand]);
            case EFormulaOperation::PushVariable:
                return Push(m_values[objStep.Operand]);
            case EFormulaOperation::PushExpression:
                return PushExpression(objStep.Operand);
            case EFormulaOperation::JumpIfFalse:
                --m_nWaiting;
                return JumpIf(m_arrWaiting[m_nWaiting] == 0, objStep.Operand);
            case EFormulaOperation::AndElseJump:
                return JumpOrTakeOff(Top() == 0, objStep.Operand);
            case EFormulaOperation::OrElseJump:
                Top() = Top() != 0 ? 1 : 0;
                return JumpOrTakeOff(Top() != 0, objStep.Operand);
            default:
                return JumpIf(true, objStep.Operand);
        }
    }

    void Push(Value value) {
        m_arrWaiting[m_nWaiting++] = value;
        ++m_nStep;
    }

    void JumpIf(bool bCondition, std::size_t nTarget) { m_nStep = bCondition ? nTarget : m_nStep + 1; }

    void JumpOrTakeOff(bool bCondition, std::size_t nTarget) {
        m_nWaiting -= bCondition ? 0 : 1;
        JumpIf(bCondition, nTarget);
    }

    void PushExpression(std::uint32_t nExpression) {
        if (m_arrIsKnown[nExpression]) {
            return Push(m_arrKnown[nExpression]);
        }
        m_arrReturns[m_nReturns++] = {nExpression, m_nStep};
        m_nStep = m_objProgram.Expressions[nExpression].FirstStep;
    }

    /// Goes back to the step that asked for the Expression that has ended. @return  false: the formula itself has ended
    bool ReturnFromExpression() {
        if (m_nReturns == 0) {
            return false;
        }
        const RETURN_PLACE& objReturn = m_arrReturns[--m_nReturns];
        m_arrKnown[objReturn.Expression] = Top();
        m_arrIsKnown[objReturn.Expression] = true;
        m_nStep = objReturn.Step;
        return true;
    }

    Value& Top() { return m_arrWaiting[m_nWaiting - 1]; }

    struct RETURN_PLACE {
        std::uint32_t Expression;
        std::size_t Step;
    };

    const FORMULA_PROGRAM& m_objProgram;
    const std::vector<Value>& m_vecLiterals;
    std::span<const Value> m_values;
    std::size_t m_nStep = 0;
    std::size_t m_nWaiting = 0;
    std::size_t m_nReturns = 0;
    // Left uninitialised: clearing them would cost more than most formulas do.
    std::array<Value, kMaxValuesAtOnce> m_arrWaiting;
    std::array<Value, kMaxExpressions> m_arrKnown;
    std::array<bool, kMaxExpressions> m_arrIsKnown;
    std::array<RETURN_PLACE, kMaxExpressions> m_arrReturns;
};

std::string DescribeStep(const FORMULA_PROGRAM& objProgram, std::size_t nStep) {
    std::string_view strName;
    for (const auto& objExpression : objProgram.Expressions) {
        if (objExpression.FirstStep <= nStep) {
            strName = objExpression.Name;
        }
    }
    return DescribeFormulaPosition(strName, objProgram.Steps[nStep].Position);
}

}  // namespace

template <class Value>
CFormula<Value>::CFormula(const FORMULA_SOURCE& objSource) {
    COMPILED_FORMULA objCompiled = CompileFormula(objSource);
    m_vecLiterals.reserve(objCompiled.Literals.size());
    for (const auto& objUse : objCompiled.Literals) {
        try {
            m_vecLiterals.push_back(ParseFormulaNumber<Value>(objUse.Literal));
        } catch (const CFormulaFault& objFault) {
            ThrowFormulaTextError(objUse.Text, objUse.Position, objFault.what());
        }
    }
    m_objProgram = std::move(objCompiled.Program);
}

template <class Value>
Value CFormula<Value>::Evaluate(std::span<const Value> values) const {
    if (values.size() != m_objProgram.VariableNames.size()) {
        ThrowFormulaValueCount(values.size(), m_objProgram.VariableNames.size());
    }
    CFormulaRun<Value> objRun(m_objProgram, m_vecLiterals, values);
    try {
        return objRun.Run();
    } catch (const CFormulaFault& objFault) {
        ThrowFormulaRunError(objFault.what() + (" at " + DescribeStep(m_objProgram, objRun.GetStep())));
    }
}

template class CFormula<std::int64_t>;
template class CFormula<double>;

}  // namespace GenApi_3_0
