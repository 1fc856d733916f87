#include "tests/producer_double/Description.h"

#include <charconv>
#include <string_view>

namespace ProducerDouble {

namespace {

std::string Hex(std::uint64_t nValue) {
    char szText[17] = {};
    std::to_chars(szText, szText + 16, nValue, 16);
    return std::string("0x") + szText;
}

class CWriter {
public:
    explicit CWriter(std::string strPort) : m_strPort(std::move(strPort)) {}

    void Header(const std::string& strModel, const std::vector<FEATURE>& vecFeature) {
        m_strXml =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<RegisterDescription ModelName=\"" +
            strModel +
            "\" VendorName=\"Norvik\" ToolTip=\"Producer double\" StandardNameSpace=\"None\""
            " SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\""
            " MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\""
            " ProductGuid=\"3F2504E0-4F89-11D3-9A0C-0305E82C3301\" VersionGuid=\"3F2504E0-4F89-11D3-9A0C-0305E82C3302\""
            " xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n<Category Name=\"Root\" NameSpace=\"Standard\">\n";
        for (const FEATURE& objFeature : vecFeature) {
            Element("pFeature", objFeature.strName);
        }
        m_strXml += "</Category>\n";
    }

    void Feature(const FEATURE& objFeature) {
        const bool bText = objFeature.nKind == FEATURE::KIND::Text;
        const bool bPlain = bText || !objFeature.strSelector.empty();  // a register, and no value above it
        if (!bPlain) {
            Value(objFeature);
        }
        Register(bText                                      ? "StringReg"
                 : objFeature.nKind == FEATURE::KIND::Float ? "FloatReg"
                                                            : "IntReg",
                 objFeature.strName + (bPlain ? "" : "Reg"), objFeature);
    }

    std::string Finish() {
        m_strXml += "<Port Name=\"" + m_strPort + "\" NameSpace=\"Standard\"/>\n</RegisterDescription>\n";
        return std::move(m_strXml);
    }

private:
    void Element(std::string_view strElement, std::string_view strContent) {
        m_strXml.append("<").append(strElement).append(">").append(strContent);
        m_strXml.append("</").append(strElement).append(">\n");
    }

    void Open(std::string_view strElement, std::string_view strName, std::string_view strNameSpace) {
        m_strXml.append("<").append(strElement).append(" Name=\"").append(strName);
        m_strXml.append("\" NameSpace=\"").append(strNameSpace).append("\">\n");
    }

    void Close(std::string_view strElement) { m_strXml.append("</").append(strElement).append(">\n"); }

    void Value(const FEATURE& objFeature) {
        const IPortControl::RANGE objWhole;
        const std::string_view strElement = objFeature.nKind == FEATURE::KIND::Integer   ? "Integer"
                                            : objFeature.nKind == FEATURE::KIND::Float   ? "Float"
                                            : objFeature.nKind == FEATURE::KIND::Command ? "Command"
                                                                                         : "Enumeration";
        Open(strElement, objFeature.strName, "Standard");
        for (const auto& [strEntry, nEntry] : objFeature.vecEntry) {
            Open("EnumEntry", strEntry, "Standard");
            Element("Value", std::to_string(nEntry));
            Close("EnumEntry");
        }
        Element("pValue", objFeature.strName + "Reg");
        if (objFeature.nKind == FEATURE::KIND::Command) {
            Element("CommandValue", "1");
        }
        if (!objFeature.strMax.empty() || objFeature.objRange.nMin != objWhole.nMin) {
            Element("Min", objFeature.strMax.empty() ? std::to_string(objFeature.objRange.nMin) : "0");
        }
        if (!objFeature.strMax.empty()) {
            Element("pMax", objFeature.strMax);
        } else if (objFeature.objRange.nMax != objWhole.nMax) {
            Element("Max", std::to_string(objFeature.objRange.nMax));
        }
        Close(strElement);
    }

    void Register(std::string_view strElement, const std::string& strName, const FEATURE& objFeature) {
        const bool bList = !objFeature.strSelector.empty();
        const bool bVolatile = bList || !objFeature.strMax.empty() || objFeature.nKind == FEATURE::KIND::Command;
        Open(strElement, strName, strName == objFeature.strName ? "Standard" : "Custom");
        Element("Address", Hex(objFeature.nAddress));
        if (bList) {
            m_strXml += "<pIndex Offset=\"" + std::to_string(objFeature.nLength) + "\">" + objFeature.strSelector +
                        "</pIndex>\n";
        }
        Element("Length", std::to_string(objFeature.nLength));
        Element("AccessMode", bList ? "RO" : "RW");
        Element("pPort", m_strPort);
        // What an update changes behind the node map's back must not come out of its cache.
        Element("Cachable", bVolatile || strName.ends_with("SelectorMaxReg") ? "NoCache" : "WriteThrough");
        if (strElement == "IntReg") {
            Element("Sign", "Signed");
        }
        if (strElement != "StringReg") {
            Element("Endianess", "BigEndian");
        }
        Close(strElement);
    }

    std::string m_strPort;
    std::string m_strXml;
};

}  // namespace

std::string WriteDescription(const std::string& strModel, const std::string& strPort,
                             const std::vector<FEATURE>& vecFeature) {
    CWriter objWriter(strPort);
    objWriter.Header(strModel, vecFeature);
    for (const FEATURE& objFeature : vecFeature) {
        objWriter.Feature(objFeature);
    }
    return objWriter.Finish();
}

}  // namespace ProducerDouble
