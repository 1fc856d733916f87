#include "TLClass/TLClassEvent/RemoteDeviceEvent.h"

#include <algorithm>
#include <exception>
#include <utility>

#include <boost/make_shared.hpp>

#include "GenApi/GCException.h"
#include "TLClass/TLClassEvent/EventLoop.h"
#include "TLClass/TLClassEvent/RegisterEventAgency.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Agency.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "support/ScopedLock.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassEvent\\RemoteDeviceEvent";
constexpr const char* kStart = "CRemoteDeviceEvent::StartGetRemoteDeviceEventThread";
constexpr const char* kThread = "CRemoteDeviceEvent::__OnThreadGetRemoteDeviceEvent";
// Bounds how late a stop is noticed should the producer not end the wait.
constexpr std::uint64_t kWaitMs = 1000;

void LogIfFailed(GC_ERROR nStatus, CGenTLLib* pLib, const char* pFunction, int nLine = __builtin_LINE()) {
    CGenTLErrorCodeVerifier::LogIfFailed(nStatus, pLib, kFile, nLine, pFunction);
}

void ThrowIfFailed(GC_ERROR nStatus, CGenTLLib* pLib, const char* pFunction, int nLine = __builtin_LINE()) {
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nStatus, pLib, kFile, nLine, pFunction);
}

}  // namespace

class CRemoteDeviceEvent::CAttachNodeMapAgency : public CAgency {
public:
    CAttachNodeMapAgency(GenApi_3_0::CEventAdapterGeneric& objEventAdapter, GenApi_3_0::INodeMap* pNodeMap)
        : m_objEventAdapter(objEventAdapter) {
        m_objEventAdapter.AttachNodeMap(pNodeMap);
    }
    ~CAttachNodeMapAgency() {
        if (!m_bArmed) {
            return;
        }
        try {
            m_objEventAdapter.DetachNodeMap();
        } catch (...) {
            LogCurrentException();
        }
    }

private:
    GenApi_3_0::CEventAdapterGeneric& m_objEventAdapter;
};

class CRemoteDeviceEvent::CGCRegisterEventAgency : public CRegisterEventAgency {
public:
    CGCRegisterEventAgency(CGenTLLib* pLib, DEV_HANDLE hDevice, EVENT_HANDLE& hEvent)
        : CRegisterEventAgency(pLib, hDevice, EVENT_REMOTE_DEVICE, hEvent,
                               "CRemoteDeviceEvent::CGCRegisterEventAgency") {}
};

CRemoteDeviceEvent::CRemoteDeviceEvent(CGenTLLib* pLib)
    : m_pLib(pLib), m_pStopEvent(boost::make_shared<CEvent>()), m_pThread(boost::make_shared<CThread>()) {}

CRemoteDeviceEvent::~CRemoteDeviceEvent() {
    StopGetRemoteDeviceEventThread();
}

void CRemoteDeviceEvent::StartGetRemoteDeviceEventThread(DEV_HANDLE hDevice, GenApi_3_0::CNodeMapRef* pNodeMapRef) {
    const CScopedLock objLock(m_csState);
    if (m_bStarted) {
        return;
    }
    try {
        __Start(hDevice, pNodeMapRef == nullptr ? nullptr : pNodeMapRef->_Ptr);
    } catch (const GenICam_3_0::GenericException&) {
        LogCurrentException();
    }
}

void CRemoteDeviceEvent::__Start(DEV_HANDLE hDevice, GenApi_3_0::INodeMap* pNodeMap) {
    m_hDevice = hDevice;
    CAttachNodeMapAgency objAttach(m_objEventAdapter, pNodeMap);
    EVENT_HANDLE hEvent = nullptr;
    std::unique_ptr<CGCRegisterEventAgency> pRegister;
    try {
        pRegister = std::make_unique<CGCRegisterEventAgency>(m_pLib, m_hDevice, hEvent);
    } catch (const CNotImplementedError&) {
        LogIfFailed(GC_ERR_NOT_IMPLEMENTED, m_pLib, kStart);
        return;
    }
    __AllocateArrays(hEvent);
    m_pStopEvent->Reset();
    __PublishEvent(hEvent);
    if (!m_pThread->Start(this, &__OnThreadGetRemoteDeviceEvent, kPriorityTimeCritical)) {
        __PublishEvent(nullptr);
        __FreeArrays();
        throw CUnexpectedError(-1, "Failed to start __OnThreadGetRemoteDeviceEvent", kFile, __LINE__, kStart);
    }
    Dismiss(objAttach);
    Dismiss(*pRegister);
    m_bStarted = true;
}

/// Once for all events, at the sizes that the producer declares.
void CRemoteDeviceEvent::__AllocateArrays(EVENT_HANDLE hEvent) {
    const std::size_t nEventDataSize = __ReadMaxSize(hEvent, EVENT_SIZE_MAX);
    const std::size_t nEventInfoDataSize = __ReadMaxSize(hEvent, EVENT_INFO_DATA_SIZE_MAX);
    m_pEventData = std::make_unique<std::uint8_t[]>(nEventDataSize);
    m_pEventInfoData = std::make_unique<std::uint8_t[]>(nEventInfoDataSize);
    m_nEventDataSize = nEventDataSize;
    m_nEventInfoDataSize = nEventInfoDataSize;
}

std::size_t CRemoteDeviceEvent::__ReadMaxSize(EVENT_HANDLE hEvent, EVENT_INFO_CMD nCommand) {
    INFO_DATATYPE nType = INFO_DATATYPE_SIZET;
    std::size_t nMaxSize = 0;
    std::size_t nSize = sizeof(nMaxSize);
    ThrowIfFailed(m_pLib->EventGetInfo(hEvent, nCommand, &nType, &nMaxSize, &nSize), m_pLib, kStart);
    if (nMaxSize > kMaxEventSize) {
        throw CUnexpectedError(-1,
                               "The producer declares events of the camera of up to " + std::to_string(nMaxSize) +
                                   " bytes; " + std::to_string(kMaxEventSize) + " are the most that are taken",
                               kFile, __LINE__, kStart);
    }
    return nMaxSize;
}

void CRemoteDeviceEvent::__FreeArrays() {
    m_pEventData.reset();
    m_pEventInfoData.reset();
    m_nEventDataSize = 0;
    m_nEventInfoDataSize = 0;
}

void CRemoteDeviceEvent::__PublishEvent(EVENT_HANDLE hEvent) {
    const CScopedLock objLock(m_csEvent);
    m_hEvent = hEvent;
}

void CRemoteDeviceEvent::StopGetRemoteDeviceEventThread() {
    constexpr const char* kFunction = "CRemoteDeviceEvent::StopGetRemoteDeviceEventThread";
    const CScopedLock objLock(m_csState);
    if (!m_bStarted) {
        return;
    }
    try {
        m_pStopEvent->Signal();
        LogIfFailed(m_pLib->EventKill(m_hEvent), m_pLib, kFunction);
        m_pThread->Join();
        {
            const CScopedLock objEventLock(m_csEvent);
            LogIfFailed(m_pLib->GCUnregisterEvent(m_hDevice, EVENT_REMOTE_DEVICE), m_pLib, kFunction);
            m_hEvent = nullptr;
        }
        m_bStarted = false;
        __FreeArrays();
        m_objEventAdapter.DetachNodeMap();
    } catch (...) {
        LogCurrentException();
    }
}

void CRemoteDeviceEvent::FlushRemoteDeviceEvent() {
    const CScopedLock objLock(m_csEvent);
    if (m_hEvent != nullptr) {
        ThrowIfFailed(m_pLib->EventFlush(m_hEvent), m_pLib, "CRemoteDeviceEvent::FlushRemoteDeviceEvent");
    }
}

std::uint64_t CRemoteDeviceEvent::GetEventNumInQueue() {
    const CScopedLock objLock(m_csEvent);
    if (m_hEvent == nullptr) {
        return 0;
    }
    INFO_DATATYPE nType = INFO_DATATYPE_UINT32;
    std::uint64_t nNumber = 0;
    std::size_t nSize = sizeof(nNumber);
    ThrowIfFailed(m_pLib->EventGetInfo(m_hEvent, EVENT_NUM_IN_QUEUE, &nType, &nNumber, &nSize), m_pLib,
                  "CRemoteDeviceEvent::GetEventNumInQueue");
    return nNumber;
}

std::uint32_t CRemoteDeviceEvent::__OnThreadGetRemoteDeviceEvent(void* pEvent) {
    auto& objThis = *static_cast<CRemoteDeviceEvent*>(pEvent);
    CFailurePause objPause;
    while (!objThis.m_pStopEvent->Wait(objPause.GetMs())) {
        bool bSuccess = false;
        try {
            bSuccess = objThis.__DeliverOne();
        } catch (...) {
            LogCurrentException();
        }
        objPause.Note(bSuccess);
    }
    return 0;
}

/// @return false if the producer failed
bool CRemoteDeviceEvent::__DeliverOne() {
    const EVENT_HANDLE hEvent = m_hEvent;
    std::size_t nDataSize = m_nEventDataSize;
    const GC_ERROR nStatus = m_pLib->EventGetData(hEvent, m_pEventData.get(), &nDataSize, kWaitMs);
    if (nStatus == GC_ERR_TIMEOUT || nStatus == GC_ERR_ABORT) {
        return true;
    }
    if (nStatus != GC_ERR_SUCCESS) {
        LogIfFailed(nStatus, m_pLib, kThread);
        return false;
    }
    return __Deliver(hEvent, std::min(nDataSize, m_nEventDataSize));
}

bool CRemoteDeviceEvent::__Deliver(EVENT_HANDLE hEvent, std::size_t nDataSize) {
    INFO_DATATYPE nType = INFO_DATATYPE_UINT64;
    std::uint64_t nEventID = 0;
    std::size_t nIDSize = sizeof(nEventID);
    GC_ERROR nStatus =
        m_pLib->EventGetDataInfo(hEvent, m_pEventData.get(), nDataSize, EVENT_DATA_NUMID, &nType, &nEventID, &nIDSize);
    if (nStatus != GC_ERR_SUCCESS) {
        LogIfFailed(nStatus, m_pLib, kThread);
        return false;
    }
    nType = INFO_DATATYPE_BUFFER;
    std::size_t nValueSize = m_nEventInfoDataSize;
    nStatus = m_pLib->EventGetDataInfo(hEvent, m_pEventData.get(), nDataSize, EVENT_DATA_VALUE, &nType,
                                       m_pEventInfoData.get(), &nValueSize);
    if (nStatus != GC_ERR_SUCCESS) {
        LogIfFailed(nStatus, m_pLib, kThread);
        return false;
    }
    // Whatever the producer says, there is no more than the array.
    nValueSize = std::min(nValueSize, m_nEventInfoDataSize);
    m_objEventAdapter.DeliverMessage(m_pEventInfoData.get(), static_cast<std::uint32_t>(nValueSize), nEventID);
    return true;
}
