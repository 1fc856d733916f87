#include "GenApi/FloatNode.h"

#include "GenApi/NumberProperties.h"

namespace GenApi_3_0 {

bool CFloatNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::ValidValueSet) {
        m_pValid = std::make_unique<std::vector<double>>(ReadValidFloats(objProperty, objReader));
        return true;
    }
    return m_objLimits.Apply(objProperty, objReader) || m_objSource.Apply(objProperty, objReader) ||
           CFloatValue::Apply(objProperty, objReader);
}

double CFloatNode::MinFloat() {
    const CEvaluation objStep(Context(), Name());
    if (m_objLimits.Min.IsSet()) {
        return m_objLimits.Min.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->MinFloat() : CFloatValue::MinFloat();
}

double CFloatNode::MaxFloat() {
    const CEvaluation objStep(Context(), Name());
    if (m_objLimits.Max.IsSet()) {
        return m_objLimits.Max.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->MaxFloat() : CFloatValue::MaxFloat();
}

double CFloatNode::IncFloat() {
    const CEvaluation objStep(Context(), Name());
    if (m_objLimits.Inc.IsSet()) {
        return m_objLimits.Inc.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->IncFloat() : 0;
}

gcstring CFloatNode::GetUnit() const {
    gcstring strUnit = CFloatValue::GetUnit();
    if (!strUnit.empty()) {
        return strUnit;
    }
    const AutoLock objLock(Context().Lock());
    const auto* pSource = dynamic_cast<const IFloat*>(m_objSource.Node());
    return pSource != nullptr ? pSource->GetUnit() : strUnit;
}

}  // namespace GenApi_3_0
