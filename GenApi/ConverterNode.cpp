#include "GenApi/ConverterNode.h"

#include <algorithm>

namespace GenApi_3_0 {

bool CIntConverterNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    return m_objFormulas.Apply(objProperty, objReader) || CIntegerValue::Apply(objProperty, objReader);
}

void CIntConverterNode::Complete(CPropertyReader& objReader) {
    m_objFormulas.Complete(objReader);
    CIntegerValue::Complete(objReader);
}

std::int64_t CIntConverterNode::MinInt() {
    const CEvaluation objStep(Context(), Name());
    return m_objFormulas.Limits().first;
}

std::int64_t CIntConverterNode::MaxInt() {
    const CEvaluation objStep(Context(), Name());
    return m_objFormulas.Limits().second;
}

std::int64_t CIntConverterNode::IncInt() {
    const CEvaluation objStep(Context(), Name());
    return std::max<std::int64_t>(m_objFormulas.Increment(), 1);
}

bool CConverterNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    return m_objFormulas.Apply(objProperty, objReader) || CFloatValue::Apply(objProperty, objReader);
}

void CConverterNode::Complete(CPropertyReader& objReader) {
    m_objFormulas.Complete(objReader);
    CFloatValue::Complete(objReader);
}

double CConverterNode::MinFloat() {
    const CEvaluation objStep(Context(), Name());
    return m_objFormulas.Limits().first;
}

double CConverterNode::MaxFloat() {
    const CEvaluation objStep(Context(), Name());
    return m_objFormulas.Limits().second;
}

double CConverterNode::IncFloat() {
    const CEvaluation objStep(Context(), Name());
    return m_objFormulas.Increment();
}

}  // namespace GenApi_3_0
