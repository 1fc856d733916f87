#pragma once

#include <cstdint>
#include <utility>

#include "GenApi/NodeFormula.h"

namespace GenApi_3_0 {

/// What a Converter and an IntConverter share: the value that they stand on, and the formulas between it and their own.
/// A part of its node; used with the lock held.
/// @tparam Value  std::int64_t or double
template <class Value>
class CConverterFormulas {
public:
    explicit CConverterFormulas(CNodeImpl& objOwner)
        : m_objOwner(objOwner), m_objTo(objOwner, m_objInputs), m_objFrom(objOwner, m_objInputs) {
        // Each formula is named after the side that it leads to, and takes the value of the other.
        m_objTo.SetArgument("FROM");
        m_objFrom.SetArgument("TO");
    }

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader);
    void Complete(CPropertyReader& objReader);

    CNodeImpl* ValueNode() const { return m_pValue; }
    EAccessMode AccessMode() const;
    Value Read(bool bIgnoreCache);
    void Write(Value value, bool bVerify);
    /// The limits of what the node stands on, seen through the formula.
    std::pair<Value, Value> Limits();
    /// The increment of what the node stands on, seen through the formula.
    /// @return 0 if there is none that holds everywhere
    Value Increment();

private:
    Value PulledInside(Value raw) const;
    Value SourceMin() const;
    Value SourceMax() const;
    Value LastStep() const;

    CNodeImpl& m_objOwner;
    CFormulaInputs m_objInputs;
    CNodeFormula<Value> m_objTo;
    CNodeFormula<Value> m_objFrom;
    CNodeImpl* m_pValue = nullptr;
    ESlope m_eSlope = Automatic;
    bool m_bLinear = false;
};

extern template class CConverterFormulas<std::int64_t>;
extern template class CConverterFormulas<double>;

}  // namespace GenApi_3_0
