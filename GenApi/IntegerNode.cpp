#include "GenApi/IntegerNode.h"

namespace GenApi_3_0 {

bool CIntegerNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    switch (objProperty.Tag) {
        case ETag::Min:
            m_objMin.SetConstant(objProperty, objReader);
            return true;
        case ETag::Max:
            m_objMax.SetConstant(objProperty, objReader);
            return true;
        case ETag::Inc:
            m_objInc.SetConstant(objProperty, objReader);
            return true;
        case ETag::pMin:
            m_objMin.SetReference(objProperty, objReader, ELink::Limit);
            return true;
        case ETag::pMax:
            m_objMax.SetReference(objProperty, objReader, ELink::Limit);
            return true;
        case ETag::pInc:
            m_objInc.SetReference(objProperty, objReader, ELink::Limit);
            return true;
        case ETag::ValidValueSet:
            m_pValid = std::make_unique<std::vector<std::int64_t>>(ReadValidIntegers(objProperty, objReader));
            return true;
        default:
            return m_objSource.Apply(objProperty, objReader) || CIntegerValue::Apply(objProperty, objReader);
    }
}

std::int64_t CIntegerNode::MinInt() {
    const CEvaluation objStep(Context(), Name());
    if (m_objMin.IsSet()) {
        return m_objMin.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->MinInt() : CIntegerValue::MinInt();
}

std::int64_t CIntegerNode::MaxInt() {
    const CEvaluation objStep(Context(), Name());
    if (m_objMax.IsSet()) {
        return m_objMax.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->MaxInt() : CIntegerValue::MaxInt();
}

std::int64_t CIntegerNode::IncInt() {
    const CEvaluation objStep(Context(), Name());
    if (m_objInc.IsSet()) {
        return m_objInc.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->IncInt() : 1;
}

gcstring CIntegerNode::GetUnit() {
    const gcstring strUnit = CIntegerValue::GetUnit();
    if (!strUnit.empty()) {
        return strUnit;
    }
    const AutoLock objLock(Context().Lock());
    auto* pSource = dynamic_cast<IInteger*>(m_objSource.Node());
    return pSource != nullptr ? pSource->GetUnit() : strUnit;
}

}  // namespace GenApi_3_0
