#include "GenApi/DescriptionReader.h"

#include <cstring>
#include <string>
#include <utility>

#include <pugixml.hpp>

#include "GenApi/GCException.h"
#include "GenApi/NodeMapLimits.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::PropertyException;
using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

// Document types are parsed so that they can be refused: entities of a description have no honest use.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_doctype;

std::string AtPosition(std::string_view strText, std::ptrdiff_t nOffset) {
    if (nOffset < 0) {
        return {};
    }
    const TEXT_POSITION objPosition = FindPosition(strText, static_cast<std::size_t>(nOffset));
    return " at line " + std::to_string(objPosition.Line) + ", column " + std::to_string(objPosition.Column);
}

/// One pass over the parser's tree that leaves the flat lists of the model.
class CReader {
public:
    CReader(std::string_view strText, DESCRIPTION_MODEL& objModel) : m_strText(strText), m_objModel(objModel) {}

    void Read() {
        pugi::xml_document objDocument;
        std::string& strBuffer = m_objModel.Text.Buffer();
        const pugi::xml_parse_result objResult =
            objDocument.load_buffer_inplace(strBuffer.data(), strBuffer.size(), kParseOptions, pugi::encoding_utf8);
        if (!objResult) {
            Throw<RuntimeException>("The description can't be parsed: " + std::string(objResult.description()) +
                                    AtPosition(m_strText, objResult.offset));
        }
        for (const pugi::xml_node objNode : objDocument.children()) {
            if (objNode.type() == pugi::node_doctype) {
                Throw<RuntimeException>("The description has a document type, which isn't allowed");
            }
        }
        const pugi::xml_node objRoot = objDocument.document_element();
        if (std::strcmp(objRoot.name(), "RegisterDescription") != 0) {
            Throw<RuntimeException>("The description's root is '" + std::string(objRoot.name()) +
                                    "', where 'RegisterDescription' was wanted" +
                                    AtPosition(m_strText, objRoot.offset_debug()));
        }
        ReserveLists();
        ReadHeader(objRoot);
        ReadNodes(objRoot, 0);
    }

private:
    void ReserveLists() {
        // From real descriptions: an element takes some 40 bytes, a node some 200.
        m_objModel.Properties.reserve(m_objModel.Text.Buffer().size() / 48);
        m_objModel.Nodes.reserve(m_objModel.Text.Buffer().size() / 200);
    }

    void ReadHeader(pugi::xml_node objRoot) {
        m_objModel.ModelName = objRoot.attribute("ModelName").value();
        m_objModel.VendorName = objRoot.attribute("VendorName").value();
        m_objModel.ToolTip = objRoot.attribute("ToolTip").value();
        m_objModel.StandardNameSpace = objRoot.attribute("StandardNameSpace").value();
        m_objModel.ProductGuid = objRoot.attribute("ProductGuid").value();
        m_objModel.VersionGuid = objRoot.attribute("VersionGuid").value();
        m_objModel.SchemaVersion =
            Version(objRoot, "SchemaMajorVersion", "SchemaMinorVersion", "SchemaSubMinorVersion");
        m_objModel.DeviceVersion = Version(objRoot, "MajorVersion", "MinorVersion", "SubMinorVersion");
    }

    static std::string Version(pugi::xml_node objRoot, const char* pMajor, const char* pMinor, const char* pSub) {
        return std::string(objRoot.attribute(pMajor).as_string("0")) + "." + objRoot.attribute(pMinor).as_string("0") +
               "." + objRoot.attribute(pSub).as_string("0");
    }

    void ReadNodes(pugi::xml_node objParent, int nDepth) {
        if (nDepth > kMaxGroupDepth) {
            Throw<RuntimeException>("The description has Group elements nested deeper than " +
                                    std::to_string(kMaxGroupDepth) + AtPosition(m_strText, objParent.offset_debug()));
        }
        for (pugi::xml_node objChild = objParent.first_child(); objChild; objChild = objChild.next_sibling()) {
            const ETag eTag = FindTag(objChild.name());
            if (eTag == ETag::Group) {
                ReadNodes(objChild, nDepth + 1);
            } else if (IsNodeTag(eTag) && eTag != ETag::EnumEntry && eTag != ETag::StructEntry) {
                ReadNode(objChild, eTag);
            }
        }
    }

    void ReadNode(pugi::xml_node objElement, ETag eKind) {
        // A StructReg is no node: its entries are, and take its properties over. It needs no name.
        const std::string_view strName =
            eKind == ETag::StructReg ? std::string_view() : RequiredName(objElement, TagName(eKind));
        const std::uint32_t nNode = AddNode(objElement, eKind, strName, kNoNode);
        const bool bNested = ReadProperties(objElement, nNode);
        if (bNested) {
            ReadNestedNodes(objElement, nNode);
        }
    }

    // Properties of one node lie side by side, so nested nodes wait until their parent's are complete.
    void ReadNestedNodes(pugi::xml_node objElement, std::uint32_t nParent) {
        std::uint32_t nProperty = m_objModel.Nodes[nParent].FirstProperty;
        for (pugi::xml_node objChild = objElement.first_child(); objChild; objChild = objChild.next_sibling()) {
            const ETag eTag = FindTag(objChild.name());
            if (!IsNestedIn(m_objModel.Nodes[nParent].Kind, eTag)) {
                continue;
            }
            const std::uint32_t nNode = AddNode(objChild, eTag, NestedName(objChild, eTag, nParent), nParent);
            ReadProperties(objChild, nNode);
            if (eTag == ETag::IntSwissKnife) {
                while (m_objModel.Properties[nProperty].Tag != ETag::IntSwissKnife) {
                    ++nProperty;
                }
                m_objModel.Properties[nProperty++].Nested = nNode;
            }
        }
    }

    static bool IsNestedIn(ETag eParent, ETag eTag) {
        switch (eTag) {
            case ETag::EnumEntry:
                return eParent == ETag::Enumeration;
            case ETag::StructEntry:
                return eParent == ETag::StructReg;
            case ETag::IntSwissKnife:
                return eParent == ETag::IntReg || eParent == ETag::MaskedIntReg || eParent == ETag::StructReg ||
                       eParent == ETag::FloatReg || eParent == ETag::StringReg || eParent == ETag::Register;
            default:
                return false;
        }
    }

    std::string_view NestedName(pugi::xml_node objElement, ETag eTag, std::uint32_t nParent) {
        if (eTag == ETag::StructEntry) {
            return RequiredName(objElement, "StructEntry");
        }
        const std::string strParent(m_objModel.Nodes[nParent].Name);
        if (eTag == ETag::EnumEntry) {
            const std::string_view strEntry = RequiredName(objElement, "EnumEntry");
            return Keep("EnumEntry_" + strParent + "_" + std::string(strEntry));
        }
        // Two registers may give what is nested in them the same name, so the place makes it unique.
        return Keep("IntSwissKnife_" + strParent + "_" + std::to_string(m_objModel.Nodes.size()));
    }

    std::uint32_t AddNode(pugi::xml_node objElement, ETag eKind, std::string_view strName, std::uint32_t nParent) {
        if (m_objModel.Nodes.size() >= kMaxNodes) {
            Throw<RuntimeException>("The description has more than " + std::to_string(kMaxNodes) + " nodes");
        }
        NODE_RECORD objRecord;
        objRecord.Name = strName;
        objRecord.Kind = eKind;
        objRecord.Parent = nParent;
        objRecord.FirstProperty = static_cast<std::uint32_t>(m_objModel.Properties.size());
        objRecord.NameSpace =
            std::strcmp(objElement.attribute("NameSpace").value(), "Standard") == 0 ? Standard : Custom;
        m_objModel.Nodes.push_back(objRecord);
        return static_cast<std::uint32_t>(m_objModel.Nodes.size() - 1);
    }

    /// @return whether the element holds nodes
    bool ReadProperties(pugi::xml_node objElement, std::uint32_t nNode) {
        bool bNested = false;
        NODE_RECORD& objRecord = m_objModel.Nodes[nNode];
        objRecord.FirstProperty = static_cast<std::uint32_t>(m_objModel.Properties.size());
        for (pugi::xml_node objChild = objElement.first_child(); objChild; objChild = objChild.next_sibling()) {
            const ETag eTag = FindTag(objChild.name());
            if (IsNestedIn(objRecord.Kind, eTag)) {
                bNested = true;
                if (eTag != ETag::IntSwissKnife) {
                    continue;
                }
            } else if (eTag == ETag::Unknown || IsNodeTag(eTag)) {
                continue;
            }
            m_objModel.Properties.push_back(MakeProperty(objChild, eTag));
        }
        objRecord.PropertyCount = static_cast<std::uint32_t>(m_objModel.Properties.size()) - objRecord.FirstProperty;
        return bNested;
    }

    PROPERTY MakeProperty(pugi::xml_node objElement, ETag eTag) {
        PROPERTY objProperty;
        objProperty.Tag = eTag;
        objProperty.Text = eTag == ETag::Value ? TextOf(objElement) : TrimXmlSpace(TextOf(objElement));
        for (const pugi::xml_attribute objAttribute : objElement.attributes()) {
            const std::string_view strName = objAttribute.name();
            if (strName == "Name" || strName == "Index" || strName == "Offset" || strName == "pOffset") {
                objProperty.Attribute = TrimXmlSpace(objAttribute.value());
                objProperty.AttributeIsReference = strName == "pOffset";
            }
        }
        return objProperty;
    }

    std::string_view TextOf(pugi::xml_node objElement) {
        const pugi::xml_node objFirst = objElement.first_child();
        if (!objFirst || !objFirst.next_sibling()) {
            return objFirst.value();
        }
        // Comments and CDATA sections cut a text into pieces.
        std::string strJoined;
        for (const pugi::xml_node objPiece : objElement.children()) {
            if (objPiece.type() == pugi::node_pcdata || objPiece.type() == pugi::node_cdata) {
                strJoined += objPiece.value();
            }
        }
        return Keep(std::move(strJoined));
    }

    std::string_view RequiredName(pugi::xml_node objElement, std::string_view strKind) {
        const std::string_view strName = TrimXmlSpace(objElement.attribute("Name").value());
        if (strName.empty()) {
            Throw<PropertyException>("A node of the kind " + std::string(strKind) + " has no name" +
                                     AtPosition(m_strText, objElement.offset_debug()));
        }
        if (strName.size() > kMaxNameLength) {
            Throw<PropertyException>("A node of the kind " + std::string(strKind) + " has a name of more than " +
                                     std::to_string(kMaxNameLength) + " bytes" +
                                     AtPosition(m_strText, objElement.offset_debug()));
        }
        return strName;
    }

    std::string_view Keep(std::string strText) { return m_objModel.MadeTexts.emplace_back(std::move(strText)); }

    std::string_view m_strText;
    DESCRIPTION_MODEL& m_objModel;
};

}  // namespace

std::unique_ptr<DESCRIPTION_MODEL> ReadDescription(std::string_view strText) {
    auto pModel = std::make_unique<DESCRIPTION_MODEL>(strText);
    CReader(strText, *pModel).Read();
    return pModel;
}

}  // namespace GenApi_3_0
