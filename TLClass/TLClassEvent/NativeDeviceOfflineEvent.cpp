#include "TLClass/TLClassEvent/NativeDeviceOfflineEvent.h"

#include <cstddef>

#include "GenApi/GCException.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "support/Log.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassEvent\\NativeDeviceOfflineEvent";

void LogIfFailed(GC_ERROR nStatus, CGenTLLib* pLib, const char* pFunction, int nLine = __builtin_LINE()) {
    CGenTLErrorCodeVerifier::LogIfFailed(nStatus, pLib, kFile, nLine, pFunction);
}

}  // namespace

void CNativeDeviceOfflineEvent::RegisterDeviceOfflineEvent(PORT_HANDLE hRemotePort) {
    constexpr const char* kFunction = "CNativeDeviceOfflineEvent::RegisterDeviceOfflineEvent";
    m_hDevice = hRemotePort;
    try {
        CNativeGCRegisterEventAgency objAgency(m_pLib, m_hDevice, m_hEvent);
        Dismiss(objAgency);
    } catch (const CNotImplementedError&) {
        LogIfFailed(GC_ERR_NOT_IMPLEMENTED, m_pLib, kFunction);
    } catch (const CUnexpectedError&) {
        LogIfFailed(GC_ERR_ERROR, m_pLib, kFunction);
    } catch (const GenICam_3_0::GenericException& objException) {
        CLog::GetInstance()->Write(objException.GetDescription());
    }
}

void CNativeDeviceOfflineEvent::UnRegisterDeviceOfflineEvent() {
    constexpr const char* kFunction = "CNativeDeviceOfflineEvent::UnRegisterDeviceOfflineEvent";
    LogIfFailed(m_pLib->EventKill(m_hEvent), m_pLib, kFunction);
    LogIfFailed(m_pLib->GCUnregisterEvent(m_hDevice, EVENT_ZR_DEVICE_OFFLINE), m_pLib, kFunction);
    m_hEvent = nullptr;
}

GC_ERROR CNativeDeviceOfflineEvent::GetOfflineEvent() {
    std::size_t nSize = 0;
    const GC_ERROR nStatus = m_pLib->EventGetData(m_hEvent, nullptr, &nSize, GENTL_INFINITE);
    if (nStatus != GC_ERR_ABORT) {
        LogIfFailed(nStatus, m_pLib, "CNativeDeviceOfflineEvent::GetOfflineEvent");
    }
    return nStatus;
}

void CNativeDeviceOfflineEvent::EventKill() {
    LogIfFailed(m_pLib->EventKill(m_hEvent), m_pLib, "CNativeDeviceOfflineEvent::EventKill");
}
