#include "support/DescriptionText.h"

namespace {

std::string Escape(std::string_view strText) {
    std::string strEscaped;
    for (const char nChar : strText) {
        switch (nChar) {
            case '&':
                strEscaped += "&amp;";
                break;
            case '<':
                strEscaped += "&lt;";
                break;
            case '>':
                strEscaped += "&gt;";
                break;
            case '"':
                strEscaped += "&quot;";
                break;
            default:
                // A control character can't stand in XML at all.
                strEscaped += static_cast<unsigned char>(nChar) < ' ' ? ' ' : nChar;
        }
    }
    return strEscaped;
}

}  // namespace

void CDescriptionText::Open(std::string_view strElement, std::string_view strName, std::string_view strNameSpace) {
    m_strNodes.append("<").append(strElement).append(" Name=\"").append(strName);
    m_strNodes.append("\" NameSpace=\"").append(strNameSpace).append("\">\n");
}

void CDescriptionText::Close(std::string_view strElement) {
    m_strNodes.append("</").append(strElement).append(">\n");
}

void CDescriptionText::Element(std::string_view strElement, std::string_view strContent) {
    m_strNodes.append("  <").append(strElement).append(">").append(Escape(strContent));
    m_strNodes.append("</").append(strElement).append(">\n");
}

void CDescriptionText::Element(std::string_view strElement, std::string_view strAttribute, std::string_view strValue,
                               std::string_view strContent) {
    m_strNodes.append("  <").append(strElement).append(" ").append(strAttribute).append("=\"");
    m_strNodes.append(Escape(strValue)).append("\">").append(Escape(strContent));
    m_strNodes.append("</").append(strElement).append(">\n");
}

std::string CDescriptionText::MakeDocument(const DESCRIPTION_HEAD& objHead) const {
    std::string strText = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<RegisterDescription";
    const auto addAttribute = [&strText](std::string_view strName, std::string_view strValue) {
        strText.append("\n  ").append(strName).append("=\"").append(Escape(strValue)).append("\"");
    };
    addAttribute("ModelName", objHead.Model);
    addAttribute("VendorName", "Norvik");
    addAttribute("ToolTip", objHead.ToolTip);
    addAttribute("StandardNameSpace", "GEV");
    for (const char* pVersion : {"SchemaMajorVersion", "SchemaMinorVersion", "MajorVersion"}) {
        addAttribute(pVersion, "1");
    }
    for (const char* pVersion : {"SchemaSubMinorVersion", "MinorVersion", "SubMinorVersion"}) {
        addAttribute(pVersion, "0");
    }
    addAttribute("ProductGuid", objHead.ProductGuid);
    addAttribute("VersionGuid", objHead.VersionGuid);
    addAttribute("xmlns", "http://www.genicam.org/GenApi/Version_1_1");
    addAttribute("xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
    addAttribute(
        "xsi:schemaLocation",
        "http://www.genicam.org/GenApi/Version_1_1 http://www.genicam.org/GenApi/GenApiSchema_Version_1_1.xsd");
    return strText + ">\n" + m_strNodes + "</RegisterDescription>\n";
}
