#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "GenApi/Formula.h"
#include "GenApi/FormulaInputs.h"

namespace GenApi_3_0 {

/// One formula of a node, bound to what it refers to. Compiled when it is first needed: most formulas of a description
/// belong to features that nobody asks for, and loading must be quick. A part of its node; used with the lock held.
/// @tparam Value  std::int64_t or double
template <class Value>
class CNodeFormula {
public:
    CNodeFormula(CNodeImpl& objOwner, const CFormulaInputs& objInputs) : m_objOwner(objOwner), m_objInputs(objInputs) {}

    void SetText(std::string_view strText) { m_strText = strText; }
    std::string_view Text() const { return m_strText; }

    /// A name that stands for a value that comes with each evaluation: FROM, TO.
    void SetArgument(std::string_view strName) { m_strArgument = strName; }

    /// @param argument  what the argument's name stands for
    /// @throws RuntimeException  the formula can't be compiled or evaluated; the message names the node
    Value Evaluate(bool bIgnoreCache, Value argument = Value{});

private:
    struct COMPILED {
        explicit COMPILED(const FORMULA_SOURCE& objSource) : Formula(objSource) {}
        CFormula<Value> Formula;
        std::vector<CFormulaInputs::INPUT> Inputs;  // those without a node are the argument
    };

    void Compile();
    Value ReadInput(const CFormulaInputs::INPUT& objInput, bool bIgnoreCache, Value argument) const;
    Value EvaluateWith(std::span<Value> values, bool bIgnoreCache, Value argument);

    CNodeImpl& m_objOwner;
    const CFormulaInputs& m_objInputs;
    std::string_view m_strText;
    std::string_view m_strArgument;
    std::unique_ptr<COMPILED> m_pCompiled;
    std::exception_ptr m_pFault;  // of a compilation that failed, so that it isn't tried again
};

extern template class CNodeFormula<std::int64_t>;
extern template class CNodeFormula<double>;

}  // namespace GenApi_3_0
