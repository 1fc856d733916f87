#include "GenApi/IntegerNode.h"

#include "GenApi/NumberProperties.h"

namespace GenApi_3_0 {

bool CIntegerNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::ValidValueSet) {
        m_pValid = std::make_unique<std::vector<std::int64_t>>(ReadValidIntegers(objProperty, objReader));
        return true;
    }
    return m_objLimits.Apply(objProperty, objReader) || m_objSource.Apply(objProperty, objReader) ||
           CIntegerValue::Apply(objProperty, objReader);
}

std::int64_t CIntegerNode::MinInt() {
    const CEvaluation objStep(Context(), Name());
    if (m_objLimits.Min.IsSet()) {
        return m_objLimits.Min.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->MinInt() : CIntegerValue::MinInt();
}

std::int64_t CIntegerNode::MaxInt() {
    const CEvaluation objStep(Context(), Name());
    if (m_objLimits.Max.IsSet()) {
        return m_objLimits.Max.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->MaxInt() : CIntegerValue::MaxInt();
}

std::int64_t CIntegerNode::IncInt() {
    const CEvaluation objStep(Context(), Name());
    if (m_objLimits.Inc.IsSet()) {
        return m_objLimits.Inc.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->IncInt() : 1;
}

gcstring CIntegerNode::GetUnit() {
    gcstring strUnit = CIntegerValue::GetUnit();
    if (!strUnit.empty()) {
        return strUnit;
    }
    const AutoLock objLock(Context().Lock());
    auto* pSource = dynamic_cast<IInteger*>(m_objSource.Node());
    return pSource != nullptr ? pSource->GetUnit() : strUnit;
}

}  // namespace GenApi_3_0
