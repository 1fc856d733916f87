#include "TLClass/TLClassXML/XMLAnalyzer.h"

#include <cstddef>
#include <exception>

#include "GenApi/GCException.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassXML/Port.h"
#include "TLClass/TLClassXML/PortText.h"
#include "TLClass/TLClassXML/XMLLoader.h"
#include "support/CriticalSection.h"
#include "support/ScopedLock.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kSourceFile = "..\\..\\..\\TLClass\\TLClassXML\\XMLAnalyzer";
constexpr const char* kDeviceName = "Device";

// Guards every parse of the process.
CCriticalSection& g_csLoadXML() {
    static CCriticalSection& csLoadXML = *new CCriticalSection;
    return csLoadXML;
}

}  // namespace

CXMLAnalyzer::CXMLAnalyzer(CGenTLLib* pLib) : m_pLib(pLib) {}

CXMLAnalyzer::~CXMLAnalyzer() {
    Clear();
}

void CXMLAnalyzer::LoadXMLFromPortHandle(PORT_HANDLE hPort) {
    m_strXML = CXMLLoader(m_pLib, hPort).LoadXML();
    // The old node map may still call the old port, so it goes first.
    m_pNodeMapRef.reset();
    m_pPort = std::make_unique<CPort>(m_pLib, hPort);
    m_pNodeMapRef = std::make_unique<GenApi_3_0::CNodeMapRef>(kDeviceName);
    __ParseXML();
    __Connect(hPort);
}

void CXMLAnalyzer::Clear() {
    m_strXML.clear();
    m_pNodeMapRef.reset();
    m_pPort.reset();
}

void CXMLAnalyzer::__ParseXML() {
    try {
        const CScopedLock objLock(g_csLoadXML());
        __LoadXMLInTryExcept();
    } catch (const GenICam_3_0::GenericException& objException) {
        throw CUnexpectedError(-1, objException.GetDescription(), kSourceFile, __LINE__,
                               "CXMLAnalyzer::LoadXMLFromPortHandle");
    }
}

void CXMLAnalyzer::__LoadXMLInTryExcept() {
    try {
        __LoadXMLFromString();
    } catch (const std::exception&) {
        throw;  // no fault, but an answer
    } catch (...) {
        __ThrowExceptionFromTryExcept();
    }
}

void CXMLAnalyzer::__LoadXMLFromString() {
    m_pNodeMapRef->_LoadXMLFromString(GenICam_3_0::gcstring(m_strXML));
}

void CXMLAnalyzer::__ThrowExceptionFromTryExcept() {
    throw CUnexpectedError(-1, "CNodeMapRef::_LoadXMLFromString failed", kSourceFile, __LINE__,
                           "CXMLAnalyzer::__ThrowExceptionFromTryExcept");
}

void CXMLAnalyzer::__Connect(PORT_HANDLE hPort) {
    constexpr const char* kFunction = "CXMLAnalyzer::LoadXMLFromPortHandle";
    const std::string strPortName = ReadPortText(
        m_pLib,
        [this, hPort](char* pBuffer, std::size_t* pSize) {
            INFO_DATATYPE nType = INFO_DATATYPE_UNKNOWN;
            return m_pLib->GCGetPortInfo(hPort, PORT_INFO_PORTNAME, &nType, pBuffer, pSize);
        },
        kSourceFile, __LINE__, kFunction);
    if (!m_pNodeMapRef->_Connect(m_pPort.get(), strPortName)) {
        throw CUnexpectedError(-1, "CNodeMapRef::_connect failed", kSourceFile, __LINE__, kFunction);
    }
}
