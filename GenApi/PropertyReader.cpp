#include "GenApi/PropertyReader.h"

#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::PropertyException;
using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

// Longer texts than this say no more in a message.
constexpr std::size_t kMaxQuoted = 80;

std::string Quoted(std::string_view strText) {
    std::string strQuoted = "'" + std::string(strText.substr(0, kMaxQuoted));
    return strQuoted + (strText.size() > kMaxQuoted ? "...'" : "'");
}

bool IsNumberKind(ETag eKind) {
    switch (eKind) {
        case ETag::Integer:
        case ETag::IntReg:
        case ETag::MaskedIntReg:
        case ETag::StructEntry:
        case ETag::Boolean:
        case ETag::Enumeration:
        case ETag::EnumEntry:
        case ETag::Float:
        case ETag::FloatReg:
        case ETag::Converter:
        case ETag::IntConverter:
        case ETag::SwissKnife:
        case ETag::IntSwissKnife:
        case ETag::Command:
        // Never implemented here, so that what stands on them isn't either, but no reason to refuse a description.
        case ETag::IntKey:
        case ETag::DcamLock:
        case ETag::SmartFeature:
        case ETag::AdvFeatureLock:
            return true;
        default:
            return false;
    }
}

bool Fits(ETag eKind, EWanted eWanted) {
    switch (eWanted) {
        case EWanted::Number:
            return IsNumberKind(eKind);
        case EWanted::Port:
            return eKind == ETag::Port;
        case EWanted::Anything:
            break;
    }
    return true;
}

std::string_view NameOf(EWanted eWanted) {
    switch (eWanted) {
        case EWanted::Number:
            return "a node with a number";
        case EWanted::Port:
            return "a Port";
        case EWanted::Anything:
            break;
    }
    return "a node";
}

}  // namespace

CNodeImpl* CPropertyReader::Node(const PROPERTY& objProperty, ELink eLink, EWanted eWanted) {
    return Resolve(objProperty, objProperty.Text, eLink, eWanted);
}

CNodeImpl* CPropertyReader::NodeOfAttribute(const PROPERTY& objProperty, ELink eLink, EWanted eWanted) {
    return Resolve(objProperty, objProperty.Attribute, eLink, eWanted);
}

CNodeImpl* CPropertyReader::NestedNode(const PROPERTY& objProperty, ELink eLink) {
    m_objContext.Graph().Add(m_nNode, objProperty.Nested, eLink);
    return m_vecNode[objProperty.Nested];
}

CNodeImpl* CPropertyReader::Resolve(const PROPERTY& objProperty, std::string_view strName, ELink eLink,
                                    EWanted eWanted) {
    const std::uint32_t nTarget = m_objNames.Find(strName);
    if (nTarget == kNoNode) {
        Throw<RuntimeException>(Subject() + ": its " + std::string(TagName(objProperty.Tag)) + " refers to the node " +
                                Quoted(strName) + ", which the description doesn't have" + Place(strName));
    }
    const ETag eKind = m_objModel.Nodes[nTarget].Kind;
    if (!Fits(eKind, eWanted)) {
        Throw<RuntimeException>(Subject() + ": its " + std::string(TagName(objProperty.Tag)) + " refers to the node " +
                                Quoted(strName) + ", which is of the kind " + std::string(TagName(eKind)) + ", where " +
                                std::string(NameOf(eWanted)) + " was wanted" + Place(strName));
    }
    m_objContext.Graph().Add(m_nNode, nTarget, eLink);
    return m_vecNode[nTarget];
}

std::int64_t CPropertyReader::Integer(const PROPERTY& objProperty) const {
    const auto nValue = objProperty.Tag == ETag::Max ? ParseMaximum(objProperty.Text) : ParseInteger(objProperty.Text);
    if (!nValue) {
        Fail(objProperty, "isn't a 64-bit integer");
    }
    return *nValue;
}

std::int64_t CPropertyReader::IntegerOfAttribute(const PROPERTY& objProperty) const {
    const auto nValue = ParseInteger(objProperty.Attribute);
    if (!nValue) {
        Fail(objProperty, "has an attribute that isn't a 64-bit integer: " + Quoted(objProperty.Attribute));
    }
    return *nValue;
}

double CPropertyReader::Float(const PROPERTY& objProperty) const {
    const bool bLimit = objProperty.Tag == ETag::Min || objProperty.Tag == ETag::Max;
    const auto fValue = bLimit ? ParseFloatLimit(objProperty.Text) : ParseFloat(objProperty.Text);
    if (!fValue) {
        Fail(objProperty, "isn't a number");
    }
    return *fValue;
}

bool CPropertyReader::YesNo(const PROPERTY& objProperty) const {
    return Word<bool>(objProperty, {{"Yes", true}, {"No", false}, {"true", true}, {"false", false}});
}

void CPropertyReader::Fail(const PROPERTY& objProperty, const std::string& strWhat, const char* pFile,
                           int nLine) const {
    Throw<PropertyException>(Subject() + ": its " + std::string(TagName(objProperty.Tag)) + " " +
                                 Quoted(objProperty.Text) + " " + strWhat + Place(objProperty.Text),
                             pFile, static_cast<unsigned int>(nLine));
}

std::string CPropertyReader::Subject() const {
    return "Node '" + std::string(Record().Name) + "' (" + std::string(TagName(Record().Kind)) + ")";
}

std::string CPropertyReader::Place(std::string_view strPart) const {
    std::string_view strInBuffer = m_objModel.Text.Holds(strPart) ? strPart : Record().Name;
    if (!m_objModel.Text.Holds(strInBuffer)) {
        return {};
    }
    const auto nOffset = static_cast<std::size_t>(strInBuffer.data() - m_objModel.Text.Buffer().data());
    const TEXT_POSITION objPosition = FindPosition(m_strText, nOffset);
    return " (line " + std::to_string(objPosition.Line) + ", column " + std::to_string(objPosition.Column) + ")";
}

}  // namespace GenApi_3_0
