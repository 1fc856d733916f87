#include "GenApi/EnumEntryNode.h"

#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {

CEnumEntryNode::CEnumEntryNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
    : CNodeImpl(objContext, objModel, nNode) {
    // Among all nodes it is called EnumEntry_<enumeration>_<entry>; the last is what users know.
    const NODE_RECORD& objRecord = objModel.Nodes[nNode];
    m_strSymbolic =
        objRecord.Name.substr(std::string_view("EnumEntry_").size() + objModel.Nodes[objRecord.Parent].Name.size() + 1);
    SetDefaultAccessMode(RO);
}

bool CEnumEntryNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    switch (objProperty.Tag) {
        case ETag::Value:
            m_nValue = objReader.Integer(objProperty);
            return true;
        case ETag::Symbolic:
            m_strSymbolic = objProperty.Text;
            return true;
        case ETag::NumericValue:
            objReader.Float(objProperty);  // kept as text; only checked here
            return true;
        default:
            return CNodeImpl::Apply(objProperty, objReader);
    }
}

double CEnumEntryNode::GetNumericValue() {
    return ParseFloat(TextOf(ETag::NumericValue)).value_or(static_cast<double>(m_nValue));
}

bool CEnumEntryNode::IsSelfClearing() {
    return TextOf(ETag::IsSelfClearing) == "Yes";
}

gcstring CEnumEntryNode::ToString(bool /*Verify*/, bool /*IgnoreCache*/) {
    return FormatInteger(m_nValue);
}

void CEnumEntryNode::FromString(const gcstring& /*ValueStr*/, bool /*Verify*/) {
    GenICam_3_0::Throw<GenICam_3_0::AccessException>(Subject() +
                                                     " is an entry of an enumeration, which can't be written");
}

}  // namespace GenApi_3_0
