#include "producer/modules/DescriptionWriter.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "producer/modules/HexText.h"

namespace producer {

namespace {

/// A number that is another one for nearly every other text (FNV-1a, 64 bits).
std::uint64_t Fingerprint(std::string_view strText, std::uint64_t nStart) {
    std::uint64_t nHash = nStart;
    for (const char nChar : strText) {
        nHash = (nHash ^ static_cast<unsigned char>(nChar)) * 0x100000001B3;
    }
    return nHash;
}

/// A consumer may keep what it parsed under the version's GUID, so the GUID follows the content.
std::string GuidOf(std::string_view strText) {
    const std::string strHex =
        HexText(Fingerprint(strText, 0xCBF29CE484222325), 16) + HexText(Fingerprint(strText, 0x9AE16A3B2F90404F), 16);
    return strHex.substr(0, 8) + '-' + strHex.substr(8, 4) + '-' + strHex.substr(12, 4) + '-' + strHex.substr(16, 4) +
           '-' + strHex.substr(20);
}

std::string_view ElementOf(FEATURE_KIND eKind) {
    switch (eKind) {
        case FEATURE_KIND::Integer:
            return "Integer";
        case FEATURE_KIND::Text:
            return "StringReg";
        case FEATURE_KIND::Enumeration:
            return "Enumeration";
        case FEATURE_KIND::Command:
            return "Command";
        case FEATURE_KIND::Duration:
            break;
    }
    return "Float";
}

}  // namespace

std::string CDescriptionWriter::Write() {
    Categories();
    for (const CFeature& objFeature : m_deqFeature) {
        Feature(objFeature);
    }
    Open("Port", m_objHeader.PortName);
    Close("Port");
    const std::string strVersionGuid = GuidOf(GetNodes());
    return MakeDocument({m_objHeader.ModelName, m_objHeader.ToolTip, m_objHeader.ProductGuid, strVersionGuid});
}

void CDescriptionWriter::Categories() {
    std::vector<std::string_view> vecCategory;
    for (const CFeature& objFeature : m_deqFeature) {
        if (std::find(vecCategory.begin(), vecCategory.end(), objFeature.m_strCategory) == vecCategory.end()) {
            vecCategory.push_back(objFeature.m_strCategory);
        }
    }
    Open("Category", "Root");
    for (const std::string_view strCategory : vecCategory) {
        Element("pFeature", strCategory);
    }
    Close("Category");
    for (const std::string_view strCategory : vecCategory) {
        Open("Category", strCategory);
        for (const CFeature& objFeature : m_deqFeature) {
            if (objFeature.m_strCategory == strCategory) {
                Element("pFeature", objFeature.m_strName);
            }
        }
        Close("Category");
    }
}

void CDescriptionWriter::Feature(const CFeature& objFeature) {
    const std::string_view strElement = ElementOf(objFeature.m_eKind);
    const std::string_view strAccess = objFeature.IsWritable() ? "RW" : "RO";
    const std::string_view strCachable = objFeature.m_bConstant ? "WriteThrough" : "NoCache";
    Open(strElement, objFeature.m_strName, objFeature.m_bCustom ? "Custom" : "Standard");
    CommonElements(objFeature);
    if (objFeature.IsText()) {
        RegisterElements(objFeature.m_nAddress, objFeature.GetLength(), strAccess, strCachable);
        Close(strElement);
        return;
    }
    for (const auto& [strEntry, nEntry] : objFeature.m_vecEntry) {
        Open("EnumEntry", strEntry, objFeature.m_bCustom ? "Custom" : "Standard");
        Element("Value", std::to_string(nEntry));
        Close("EnumEntry");
    }
    Element("pValue", objFeature.m_strName + "Reg");
    if (objFeature.m_eKind == FEATURE_KIND::Command) {
        Element("CommandValue", std::to_string(kCommandValue));
    }
    if (objFeature.m_bHasMin) {
        Element("Min", std::to_string(objFeature.m_nMin));
    }
    if (objFeature.m_funMax) {
        Element("pMax", objFeature.m_strName + "Max");
    }
    if (!objFeature.m_strUnit.empty()) {
        Element("Unit", objFeature.m_strUnit);
    }
    if (!objFeature.m_strRepresentation.empty()) {
        Element("Representation", objFeature.m_strRepresentation);
    }
    Selected(objFeature);
    Close(strElement);
    NumberRegister(objFeature.m_strName + "Reg", objFeature, objFeature.m_nAddress, strAccess, strCachable);
    if (objFeature.m_funMax) {
        NumberRegister(objFeature.m_strName + "Max", objFeature, objFeature.m_nMaxAddress, "RO", "NoCache");
        NumberRegister(objFeature.m_strName + "Listed", objFeature, objFeature.m_nListedAddress, "RO", "NoCache");
    }
}

void CDescriptionWriter::CommonElements(const CFeature& objFeature) {
    Element("ToolTip", objFeature.m_strToolTip);
    Element("Visibility", objFeature.m_strVisibility);
    Availability(objFeature);
    if (!objFeature.m_strLock.empty()) {
        Element("pIsLocked", objFeature.m_strLock);
    }
    if (objFeature.m_bStreamable) {
        Element("Streamable", "Yes");
    }
}

void CDescriptionWriter::Availability(const CFeature& objFeature) {
    if (!objFeature.m_strSelector.empty()) {
        Element("pIsAvailable", objFeature.m_strSelector + "Listed");
    }
}

void CDescriptionWriter::Selected(const CFeature& objFeature) {
    for (const CFeature& objOther : m_deqFeature) {
        if (objOther.m_strSelector == objFeature.m_strName) {
            Element("pSelected", objOther.m_strName);
        }
    }
}

void CDescriptionWriter::NumberRegister(const std::string& strName, const CFeature& objFeature, std::uint64_t nAddress,
                                        std::string_view strAccess, std::string_view strCachable) {
    Open("IntReg", strName, "Custom");
    Element("Visibility", "Invisible");
    Availability(objFeature);
    RegisterElements(nAddress, kNumberRegisterLength, strAccess, strCachable);
    Element("Sign", "Signed");
    Element("Endianess", "LittleEndian");
    Close("IntReg");
}

void CDescriptionWriter::RegisterElements(std::uint64_t nAddress, std::size_t nLength, std::string_view strAccess,
                                          std::string_view strCachable) {
    Element("Address", "0x" + HexText(nAddress));
    Element("Length", std::to_string(nLength));
    Element("AccessMode", strAccess);
    Element("pPort", m_objHeader.PortName);
    Element("Cachable", strCachable);
}

}  // namespace producer
