#include "GenApi/StringNode.h"

#include "GenApi/NodeMapLimits.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {

bool CStringNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::Value) {
        m_strOwn = objProperty.Text;
        return true;
    }
    if (objProperty.Tag == ETag::pValue) {
        m_pSource = dynamic_cast<CStringValue*>(objReader.Node(objProperty, ELink::Value, EWanted::Anything));
        if (m_pSource == nullptr) {
            objReader.Fail(objProperty, "is no String and no StringReg, as was wanted");
        }
        return true;
    }
    return CStringValue::Apply(objProperty, objReader);
}

std::int64_t CStringNode::MaxLength() {
    const CEvaluation objStep(Context(), Name());
    return m_pSource != nullptr ? m_pSource->MaxLength() : kMaxRegisterLength;
}

std::string CStringNode::FetchText(bool bIgnoreCache) {
    return m_pSource != nullptr ? m_pSource->ReadText(bIgnoreCache) : m_strOwn;
}

void CStringNode::StoreText(const std::string& strValue, bool bVerify) {
    if (m_pSource != nullptr) {
        m_pSource->WriteText(strValue, bVerify);
        return;
    }
    CChange objChange(Context());
    m_strOwn = strValue;
    objChange.Written(Number());
    objChange.Finish();
}

}  // namespace GenApi_3_0
