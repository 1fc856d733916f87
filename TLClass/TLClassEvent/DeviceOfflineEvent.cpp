#include "TLClass/TLClassEvent/DeviceOfflineEvent.h"

#include <algorithm>
#include <utility>

#include <boost/make_shared.hpp>

#include "TLClass/TLClassEvent/EventLoop.h"
#include "TLClass/TLClassEvent/IDeviceOfflineCallback.h"
#include "support/Log.h"
#include "support/ScopedLock.h"
#include "support/Text.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassEvent\\DeviceOfflineEvent";

}  // namespace

CDeviceOfflineEvent::CDeviceOfflineEvent(CGenTLLib* pLib)
    : m_pCallbackLock(boost::make_shared<CCriticalSection>()),
      m_pOfflineLock(boost::make_shared<CCriticalSection>()),
      m_objNative(pLib),
      m_pThread(boost::make_shared<CThread>()) {}

CDeviceOfflineEvent::~CDeviceOfflineEvent() {
    StopGetDeviceOfflineEventThread();
    UnregisterAllCallback();
}

IDeviceOfflineCallback* CDeviceOfflineEvent::RegisterDeviceOfflineCallback(IEventCallback* pCallback) {
    const CScopedLock objLock(*m_pCallbackLock);
    const std::shared_ptr<IEventCallback> pClone(pCallback == nullptr ? nullptr : pCallback->Clone());
    CallbackPointer pRegistration = std::dynamic_pointer_cast<IDeviceOfflineCallback>(pClone);
    if (pRegistration != nullptr) {
        m_vecCallback.push_back(pRegistration);
    }
    return pRegistration.get();
}

void CDeviceOfflineEvent::UnregisterDeviceOfflineCallback(IDeviceOfflineCallback* pRegistration) {
    const CScopedLock objLock(*m_pCallbackLock);
    const auto itFound =
        std::find_if(m_vecCallback.begin(), m_vecCallback.end(),
                     [&](const CallbackPointer& pCallback) { return pCallback.get() == pRegistration; });
    if (itFound != m_vecCallback.end()) {
        const CallbackPointer pGone = std::move(*itFound);  // its destructor finds the list in order
        m_vecCallback.erase(itFound);
    }
}

void CDeviceOfflineEvent::UnregisterAllCallback() {
    const CScopedLock objLock(*m_pCallbackLock);
    while (!m_vecCallback.empty()) {
        UnregisterDeviceOfflineCallback(m_vecCallback.front().get());
    }
}

void CDeviceOfflineEvent::RegisterEvent(const std::atomic<PORT_HANDLE>& hRemotePort) {
    if (m_bRegistered) {
        return;
    }
    const CScopedLock objLock(m_csState);
    if (!m_bRegistered) {
        const PORT_HANDLE hPort = hRemotePort;
        m_objNative.RegisterDeviceOfflineEvent(hPort);
        m_bRegistered = hPort != nullptr;
    }
}

void CDeviceOfflineEvent::UnRegisterEvent() {
    const CScopedLock objLock(m_csState);
    StopGetDeviceOfflineEventThread();  // a start may have come between the caller's own stop and this
    if (m_bRegistered) {
        m_objNative.UnRegisterDeviceOfflineEvent();
        m_bRegistered = false;
    }
}

void CDeviceOfflineEvent::StartGetDeviceOfflineEventThread() {
    if (m_bStarted) {
        return;
    }
    const CScopedLock objLock(m_csState);
    if (m_bStarted || !m_objNative.IsRegistered()) {
        return;
    }
    if (!m_pThread->Start(this, &__OnThreadGetDeviceOfflineEvent, kPriorityTimeCritical)) {
        throw CUnexpectedError(-1, "Failed to start __OnThreadGetDeviceOfflineEvent", kFile, __LINE__,
                               "CDeviceOfflineEvent::StartGetDeviceOfflineEventThread");
    }
    m_bStarted = true;
}

void CDeviceOfflineEvent::StopGetDeviceOfflineEventThread() {
    const CScopedLock objLock(m_csState);
    if (!m_bStarted) {
        return;
    }
    // There is no other way to end the wait. A kill before it began is remembered by the producer.
    m_objNative.EventKill();
    m_pThread->Join();
    m_bStarted = false;
}

bool CDeviceOfflineEvent::IsDeviceOffline() const {
    const CScopedLock objLock(*m_pOfflineLock);
    return m_bOffline;
}

void CDeviceOfflineEvent::__SetOfflineFlag(bool bOffline) {
    const CScopedLock objLock(*m_pOfflineLock);
    m_bOffline = bOffline;
}

std::uint32_t CDeviceOfflineEvent::__OnThreadGetDeviceOfflineEvent(void* pEvent) {
    auto* const pThis = static_cast<CDeviceOfflineEvent*>(pEvent);
    if (pThis == nullptr) {
        CLog::GetInstance()->Write(FormatFailure(
            kFile, __LINE__, "CDeviceOfflineEvent::__OnThreadGetDeviceOfflineEvent", "Invalid parameter"));
        return 0;
    }
    try {
        // The one wait is the whole life of the thread: a camera goes once.
        if (pThis->m_objNative.GetOfflineEvent() == GC_ERR_SUCCESS) {
            pThis->__SetOfflineFlag(true);
            pThis->__CallCallbacks();
        }
    } catch (...) {
        LogCurrentException();
    }
    return 0;
}

void CDeviceOfflineEvent::__CallCallbacks() {
    const CScopedLock objLock(*m_pCallbackLock);
    // Callbacks may register and unregister others and themselves: the walk is over those that there were, without
    // those that have gone on the way.
    const std::vector<CallbackPointer> vecCallback = m_vecCallback;
    for (const CallbackPointer& pCallback : vecCallback) {
        if (std::find(m_vecCallback.begin(), m_vecCallback.end(), pCallback) != m_vecCallback.end()) {
            pCallback->OnDeviceOffline();
        }
    }
}
