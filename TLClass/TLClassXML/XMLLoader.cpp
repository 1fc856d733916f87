#include "TLClass/TLClassXML/XMLLoader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "TLClass/TLClassXML/PortText.h"
#include "TLClass/TLClassXML/XMLArchive.h"
#include "TLClass/TLClassXML/XMLLimits.h"
#include "support/Text.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kSourceFile = "..\\..\\..\\TLClass\\TLClassXML\\XMLLoader";

void CheckLength(std::uint64_t nLength, int nLine, const char* pFunction) {
    if (nLength > kMaxDescriptionLength) {
        throw CUnexpectedError(-1,
                               "The XML is said to have " + std::to_string(nLength) + " bytes, more than " +
                                   std::to_string(kMaxDescriptionLength),
                               kSourceFile, nLine, pFunction);
    }
}

}  // namespace

std::string CXMLLoader::LoadXML() {
    const XML_URL_INFO objUrl = AnalyzeXMLUrl(__ReadUrl());
    switch (objUrl.Type) {
        case EXMLUrlType::File:
            return __ReadXMLFromFile(objUrl.File);
        case EXMLUrlType::Local:
            return __ReadXMLFromRemoteDevice(objUrl.Local);
        case EXMLUrlType::None:
            break;
    }
    throw CUnexpectedError(-1, "Invalid XML format", kSourceFile, __LINE__, "CXMLLoader::LoadXML");
}

std::string CXMLLoader::__ReadUrl() {
    constexpr const char* kFunction = "CXMLLoader::__ReadUrl";
    std::uint32_t nUrls = 0;
    const GC_ERROR nStatus = m_pLib->GCGetNumPortURLs(m_hPort, &nUrls);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nStatus, m_pLib, kSourceFile, __LINE__, kFunction);
    if (nUrls == 0) {
        throw CUnexpectedError(-1, "UrlNum <= 0", kSourceFile, __LINE__, kFunction);
    }
    return ReadPortText(
        m_pLib,
        [this](char* pBuffer, std::size_t* pSize) {
            INFO_DATATYPE nType = INFO_DATATYPE_UNKNOWN;
            return m_pLib->GCGetPortURLInfo(m_hPort, 0, URL_INFO_URL, &nType, pBuffer, pSize);
        },
        kSourceFile, __LINE__, kFunction);
}

std::string CXMLLoader::__ReadXMLFromRemoteDevice(const XML_LOCAL_INFO& objLocal) {
    constexpr const char* kFunction = "CXMLLoader::__ReadXMLFromRemoteDevice";
    CheckLength(objLocal.Length, __LINE__, kFunction);
    std::vector<char> vecBuffer(static_cast<std::size_t>(objLocal.Length) + 1);
    std::size_t nSize = vecBuffer.size() - 1;
    const GC_ERROR nStatus = m_pLib->GCReadPort(m_hPort, objLocal.Address, vecBuffer.data(), &nSize);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nStatus, m_pLib, kSourceFile, __LINE__, kFunction);
    return __GetXMLContent(objLocal.Name, vecBuffer);
}

std::string CXMLLoader::__ReadXMLFromFile(const XML_FILE_INFO& objFile) {
    constexpr const char* kFunction = "CXMLLoader::__ReadXMLFromFile";
    std::error_code objError;
    // A pipe or a device would make the read wait without end.
    const bool bRegular = std::filesystem::is_regular_file(objFile.Path, objError);
    std::ifstream objStream;
    if (bRegular) {
        objStream.open(objFile.Path, std::ios::binary);
    }
    if (!objStream.is_open()) {
        throw CUnexpectedError(-1, "Failed to read XML from file", kSourceFile, __LINE__, kFunction);
    }
    objStream.seekg(0, std::ios::end);
    const std::streamoff nSize = objStream.tellg();
    objStream.seekg(0, std::ios::beg);
    CheckLength(static_cast<std::uint64_t>(nSize), __LINE__, kFunction);
    std::vector<char> vecBuffer(static_cast<std::size_t>(nSize) + 1);
    objStream.read(vecBuffer.data(), nSize);
    return __GetXMLContent(objFile.Name, vecBuffer);
}

/// @param vecBuffer  the content and a zero byte behind it
std::string CXMLLoader::__GetXMLContent(const std::string& strName, const std::vector<char>& vecBuffer) {
    if (ToUpperAscii(strName).ends_with("ZIP")) {
        const std::vector<char> vecPacked(vecBuffer.begin(), vecBuffer.end() - 1);
        std::vector<char> vecContent;
        if (!UnpackXMLBuffer(vecPacked, vecContent)) {
            throw CUnexpectedError(-1, "Uncompress zip file failed", kSourceFile, __LINE__,
                                   "CXMLLoader::__GetXMLContent");
        }
        return {vecContent.begin(), vecContent.end()};
    }
    return vecBuffer.data();
}
