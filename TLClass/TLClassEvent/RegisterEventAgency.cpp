#include "TLClass/TLClassEvent/RegisterEventAgency.h"

#include <string>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassEvent\\RegisterEventAgency";

}  // namespace

CRegisterEventAgency::CRegisterEventAgency(CGenTLLib* pLib, EVENTSRC_HANDLE hSource, EVENT_TYPE nType,
                                           EVENT_HANDLE& hEvent, const char* pClassName)
    : m_pLib(pLib), m_hSource(hSource), m_nType(nType), m_hEvent(hEvent), m_pClassName(pClassName) {
    EVENT_HANDLE hRegistered = nullptr;
    const GC_ERROR nStatus = m_pLib->GCRegisterEvent(m_hSource, m_nType, &hRegistered);
    try {
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nStatus, m_pLib, kFile, __LINE__, m_pClassName);
    } catch (...) {
        if (hRegistered != nullptr) {  // a refusal that came with an event, which nobody would unregister
            __Unregister();
        }
        throw;
    }
    m_hEvent = hRegistered;
}

CRegisterEventAgency::~CRegisterEventAgency() {
    if (m_bArmed) {
        __Unregister();
        m_hEvent = nullptr;
    }
}

void CRegisterEventAgency::__Unregister() {
    CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->GCUnregisterEvent(m_hSource, m_nType), m_pLib, kFile, __LINE__,
                                         m_pClassName);
}
