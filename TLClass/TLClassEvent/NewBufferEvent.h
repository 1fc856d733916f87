#pragma once

#include <cstdint>
#include <memory>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassEvent/NativeNewBufferEvent.h"
#include "TLClass/TLClassMain/UnCopyable.h"
#include "support/CriticalSection.h"
#include "support/Event.h"
#include "support/Thread.h"

class IEventCallback;
class INewBufferCallback;

/// Hands the frames of one data stream out, in one of two ways. With a callback registered at the start, a thread calls
/// it with each frame and queues the buffer again. Without one there is no thread: the caller polls GetBuffer and
/// queues the buffer itself; a callback registered later waits for the next start.
///
/// Part of its data stream, whose lock serialises the first four operations. The others may be called from any thread.
///
/// The thread polls: each pass waits for a frame for at most a second. The callback runs on it, with the callback's
/// lock held, and the next frame is taken when it has returned. It may take itself away (it is deleted when it returns)
/// and replace itself. It must not start, stop or close the data stream or its device: the stop waits for its thread.
/// Nor may it wait for another thread that does so or that registers or unregisters. What it throws is logged.
class CNewBufferEvent : public CUnCopyable {
public:
    /// @param pLib  not owned
    explicit CNewBufferEvent(CGenTLLib* pLib);
    /// Stops.
    ~CNewBufferEvent();

    void RegisterEventBufferHandle(DS_HANDLE hDataStream) { m_objNative.RegisterEventBufferHandle(hDataStream); }
    void UnregisterEventBufferHandle() { m_objNative.UnregisterEventBufferHandle(); }

    /// Starts taking frames. Does nothing if it is started.
    /// @param hDataStream    not used: the event is registered
    /// @param pInitInfo      copied
    /// @param pChunkAdapter  not owned; must live until the stop
    /// @throws CUnexpectedError  the thread can't be started
    void StartGetNewBuffer(DS_HANDLE hDataStream, TLClass::IBufferInitInfo* pInitInfo,
                           GenApi_3_0::CChunkAdapter* pChunkAdapter);
    /// Ends the thread, whose callback it lets finish, and waits in GetBuffer. No buffer is used any more afterwards.
    /// Does nothing if it isn't started.
    void StopGetNewBuffer();

    /// See CNativeNewBufferEvent.
    CBuffer* GetBuffer(BUFFER_MODULE_INFO* pInformation, std::uint32_t nTimeoutMs, bool bThrow) {
        return m_objNative.GetBuffer(pInformation, nTimeoutMs, bThrow);
    }

    /// Keeps a clone of the callback in place of the one before, once a call of that has ended. A callback of another
    /// kind, or null, leaves none.
    void RegisterCallback(IEventCallback* pCallback);
    void UnregisterCallback();
    bool IsCallbackRegistered() const;

    /// 0 if none runs.
    virtual std::uint32_t GetThreadId() const { return m_pThread->GetThreadId(); }
    virtual CNativeNewBufferEvent* GetNativeEvent() { return &m_objNative; }

private:
    static std::uint32_t __OnThreadGetImage(void* pEvent);
    bool __TakeOne();
    void __CallCallback(const BUFFER_MODULE_INFO& objInformation);

    const boost::shared_ptr<CCriticalSection> m_pCallbackLock;  // guards m_pCallback, also through a call of it
    std::shared_ptr<INewBufferCallback> m_pCallback;            // the clone; shared with a call that runs
    const boost::shared_ptr<CEvent> m_pStopEvent;
    bool m_bStarted = false;
    CNativeNewBufferEvent m_objNative;
    const boost::shared_ptr<CThread> m_pThread;  // uses all the others
};
