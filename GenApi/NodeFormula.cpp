#include "GenApi/NodeFormula.h"

#include <string>
#include <type_traits>

#include "GenApi/GCException.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::GenericException;
using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

// Formulas with more variables take memory for each evaluation.
constexpr std::size_t kUsualInputs = 16;

// How much of a formula takes about as long as the rest of an evaluation.
constexpr std::size_t kLettersPerEvaluation = 64;

}  // namespace

template <class Value>
void CNodeFormula<Value>::Compile() {
    if (m_pFault) {
        std::rethrow_exception(m_pFault);
    }
    try {
        FORMULA_SOURCE objSource;
        objSource.Text = m_strText;
        m_objInputs.Describe(objSource);
        if (!m_strArgument.empty()) {
            objSource.Variables.emplace_back(m_strArgument);
        }
        auto pCompiled = std::make_unique<COMPILED>(objSource);
        for (const std::string& strName : pCompiled->Formula.GetVariableNames()) {
            pCompiled->Inputs.push_back(strName == m_strArgument ? CFormulaInputs::INPUT{}
                                                                 : m_objInputs.Find(m_objOwner, strName));
        }
        m_pCompiled = std::move(pCompiled);
    } catch (const GenericException& e) {
        m_pFault = std::make_exception_ptr(RuntimeException(
            m_objOwner.Subject() + ": its formula can't be used: " + e.GetDescription(), __FILE__, __LINE__));
        std::rethrow_exception(m_pFault);
    }
}

template <class Value>
Value CNodeFormula<Value>::ReadInput(const CFormulaInputs::INPUT& objInput, bool bIgnoreCache, Value argument) const {
    if (objInput.pNode == nullptr) {
        return argument;
    }
    if constexpr (std::is_same_v<Value, double>) {
        return CFormulaInputs::ReadFloat(objInput, bIgnoreCache);
    } else {
        return CFormulaInputs::ReadInt(objInput, bIgnoreCache);
    }
}

template <class Value>
Value CNodeFormula<Value>::EvaluateWith(std::span<Value> values, bool bIgnoreCache, Value argument) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = ReadInput(m_pCompiled->Inputs[i], bIgnoreCache, argument);
    }
    m_objOwner.Context().NoteWork(values.size() + m_strText.size() / kLettersPerEvaluation);
    try {
        return m_pCompiled->Formula.Evaluate(values);
    } catch (const GenericException& e) {
        Throw<RuntimeException>(m_objOwner.Subject() + ": its formula has no value now: " + e.GetDescription());
    }
}

template <class Value>
Value CNodeFormula<Value>::Evaluate(bool bIgnoreCache, Value argument) {
    if (m_pCompiled == nullptr) {
        Compile();
    }
    const std::size_t nInputs = m_pCompiled->Inputs.size();
    if (nInputs <= kUsualInputs) {
        std::array<Value, kUsualInputs> values;
        return EvaluateWith(std::span(values).first(nInputs), bIgnoreCache, argument);
    }
    std::vector<Value> vecValue(nInputs);
    return EvaluateWith(vecValue, bIgnoreCache, argument);
}

template class CNodeFormula<std::int64_t>;
template class CNodeFormula<double>;

}  // namespace GenApi_3_0
