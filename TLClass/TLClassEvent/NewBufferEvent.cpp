#include "TLClass/TLClassEvent/NewBufferEvent.h"

#include <exception>

#include <boost/make_shared.hpp>

#include "TLClass/TLClassEvent/EventLoop.h"
#include "TLClass/TLClassEvent/INewBufferCallback.h"
#include "TLClass/TLClassMain/Buffer.h"
#include "support/ScopedLock.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassEvent\\NewBufferEvent";
// Bounds how late a stop is noticed should the producer not end the wait.
constexpr std::uint32_t kWaitMs = 1000;

}  // namespace

CNewBufferEvent::CNewBufferEvent(CGenTLLib* pLib)
    : m_pCallbackLock(boost::make_shared<CCriticalSection>()),
      m_pStopEvent(boost::make_shared<CEvent>()),
      m_objNative(pLib),
      m_pThread(boost::make_shared<CThread>()) {}

CNewBufferEvent::~CNewBufferEvent() {
    StopGetNewBuffer();
}

void CNewBufferEvent::StartGetNewBuffer(DS_HANDLE /*hDataStream*/, TLClass::IBufferInitInfo* pInitInfo,
                                        GenApi_3_0::CChunkAdapter* pChunkAdapter) {
    if (m_bStarted) {
        return;
    }
    m_objNative.SetInitInfo(pInitInfo, pChunkAdapter);
    m_pStopEvent->Reset();  // a signal of the last stop may be left
    if (IsCallbackRegistered() && !m_pThread->Start(this, &__OnThreadGetImage, kPriorityTimeCritical)) {
        m_objNative.ClearInitInfo();
        throw CUnexpectedError(-1, "Failed to start __OnThreadGetImage", kFile, __LINE__,
                               "CNewBufferEvent::StartGetNewBuffer");
    }
    m_bStarted = true;
}

void CNewBufferEvent::StopGetNewBuffer() {
    if (!m_bStarted) {
        return;
    }
    // The thread may be on its way to the next pass or wait in the producer: it needs both.
    m_pStopEvent->Signal();
    m_objNative.EventKill();
    m_pThread->Join();
    m_objNative.ClearInitInfo();
    m_bStarted = false;
}

void CNewBufferEvent::RegisterCallback(IEventCallback* pCallback) {
    const CScopedLock objLock(*m_pCallbackLock);
    const std::shared_ptr<IEventCallback> pClone(pCallback == nullptr ? nullptr : pCallback->Clone());
    m_pCallback = std::dynamic_pointer_cast<INewBufferCallback>(pClone);
}

void CNewBufferEvent::UnregisterCallback() {
    const CScopedLock objLock(*m_pCallbackLock);
    m_pCallback.reset();
}

bool CNewBufferEvent::IsCallbackRegistered() const {
    const CScopedLock objLock(*m_pCallbackLock);
    return m_pCallback != nullptr;
}

std::uint32_t CNewBufferEvent::__OnThreadGetImage(void* pEvent) {
    auto& objThis = *static_cast<CNewBufferEvent*>(pEvent);
    CFailurePause objPause;
    while (!objThis.m_pStopEvent->Wait(objPause.GetMs())) {
        objPause.Note(objThis.__TakeOne());
    }
    return 0;
}

/// @return false if the producer failed
bool CNewBufferEvent::__TakeOne() {
    CBuffer* pBuffer = nullptr;
    bool bSuccess = false;
    try {
        BUFFER_MODULE_INFO objInformation;
        const GC_ERROR nStatus = m_objNative.TakeBuffer(pBuffer, objInformation, kWaitMs);
        bSuccess = nStatus == GC_ERR_SUCCESS || nStatus == GC_ERR_TIMEOUT || nStatus == GC_ERR_ABORT;
        if (pBuffer != nullptr) {
            __CallCallback(objInformation);
        }
    } catch (...) {
        LogCurrentException();
    }
    if (pBuffer != nullptr) {
        try {
            pBuffer->QueueBuffer();
        } catch (const std::exception&) {
            // The buffer is lost to this acquisition. A stop that flushed the producer meanwhile ends here too, so
            // nothing is said.
        }
    }
    return bSuccess;
}

void CNewBufferEvent::__CallCallback(const BUFFER_MODULE_INFO& objInformation) {
    const CScopedLock objLock(*m_pCallbackLock);
    // Shared, as a callback may unregister itself.
    const std::shared_ptr<INewBufferCallback> pCallback = m_pCallback;
    if (pCallback == nullptr) {
        return;
    }
    try {
        pCallback->OnNewBuffer(objInformation);
    } catch (...) {
        LogCurrentException();
    }
}
