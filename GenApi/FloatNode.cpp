#include "GenApi/FloatNode.h"

#include "GenApi/IntegerValue.h"

namespace GenApi_3_0 {

bool CFloatNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
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
            m_pValid = std::make_unique<std::vector<double>>(ReadValidFloats(objProperty, objReader));
            return true;
        default:
            return m_objSource.Apply(objProperty, objReader) || CFloatValue::Apply(objProperty, objReader);
    }
}

double CFloatNode::MinFloat() {
    const CEvaluation objStep(Context(), Name());
    if (m_objMin.IsSet()) {
        return m_objMin.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->MinFloat() : CFloatValue::MinFloat();
}

double CFloatNode::MaxFloat() {
    const CEvaluation objStep(Context(), Name());
    if (m_objMax.IsSet()) {
        return m_objMax.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->MaxFloat() : CFloatValue::MaxFloat();
}

double CFloatNode::IncFloat() {
    const CEvaluation objStep(Context(), Name());
    if (m_objInc.IsSet()) {
        return m_objInc.Read(false);
    }
    CNodeImpl* pSource = m_objSource.Node();
    return pSource != nullptr ? pSource->IncFloat() : 0;
}

gcstring CFloatNode::GetUnit() const {
    const gcstring strUnit = CFloatValue::GetUnit();
    if (!strUnit.empty()) {
        return strUnit;
    }
    const AutoLock objLock(Context().Lock());
    const auto* pSource = dynamic_cast<const IFloat*>(m_objSource.Node());
    return pSource != nullptr ? pSource->GetUnit() : strUnit;
}

}  // namespace GenApi_3_0
