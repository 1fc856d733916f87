#include "TLClass/TLClassXML/Port.h"

#include <cstddef>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"

namespace {

constexpr const char* kSourceFile = "..\\..\\..\\TLClass\\TLClassXML\\Port";

}  // namespace

void CPort::Read(void* pBuffer, std::int64_t Address, std::int64_t Length) {
    auto nSize = static_cast<std::size_t>(Length);
    const GC_ERROR nStatus = m_pLib->GCReadPort(m_hPort, static_cast<std::uint64_t>(Address), pBuffer, &nSize);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nStatus, m_pLib, kSourceFile, __LINE__, "CPort::Read");
}

void CPort::Write(const void* pBuffer, std::int64_t Address, std::int64_t Length) {
    auto nSize = static_cast<std::size_t>(Length);
    const GC_ERROR nStatus = m_pLib->GCWritePort(m_hPort, static_cast<std::uint64_t>(Address), pBuffer, &nSize);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nStatus, m_pLib, kSourceFile, __LINE__, "CPort::Write");
}
