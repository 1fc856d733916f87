#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassEvent/NativeDeviceOfflineEvent.h"
#include "TLClass/TLClassMain/UnCopyable.h"
#include "support/CriticalSection.h"
#include "support/Thread.h"

class IDeviceOfflineCallback;
class IEventCallback;

/// Tells once that an open camera has gone: raises a flag, then calls every callback in the order of registration.
///
/// Part of its device, which registers and starts with the first callback and stops with its close; after that it can
/// be started again. Any thread may call.
///
/// The thread doesn't poll: it blocks in the producer without limit until the event comes or a stop kills the wait, and
/// then it ends. The callbacks run on it, with the callbacks' lock held through all of them. One may ask
/// IsDeviceOffline, and register and unregister callbacks, itself included (it is deleted when it returns). It must not
/// stop the event or close its device: the stop waits for its thread. Nor may it wait for another thread that does so
/// or that registers or unregisters. One that throws keeps those behind it from being called; what it threw is logged.
class CDeviceOfflineEvent : public CUnCopyable {
public:
    /// @param pLib  not owned
    explicit CDeviceOfflineEvent(CGenTLLib* pLib);
    /// Stops, then deletes the callbacks.
    virtual ~CDeviceOfflineEvent();

    /// Keeps a clone of the callback.
    /// @return the clone, which serves as the registration and isn't the caller's; null, and nothing registered, for a
    ///         callback of another kind
    IDeviceOfflineCallback* RegisterDeviceOfflineCallback(IEventCallback* pCallback);
    /// Deletes the clone, once a call of it on another thread has ended. Does nothing for a pointer that isn't
    /// registered.
    void UnregisterDeviceOfflineCallback(IDeviceOfflineCallback* pRegistration);
    void UnregisterAllCallback();

    /// Does nothing if it is registered. A producer without the event counts as registered, too; a closed device, whose
    /// port is null, does not, so that the next registration tries again.
    /// @param hRemotePort  as its device has it, which clears it before it unregisters the event: who registers while
    ///                     the device closes never reaches a port that is about to go
    /// @throws CZrException  see CNativeDeviceOfflineEvent
    void RegisterEvent(const std::atomic<PORT_HANDLE>& hRemotePort);
    /// Stops, then takes the event back. Does nothing if it isn't registered.
    void UnRegisterEvent();

    /// Does nothing if it is started, and for a producer without the event.
    /// @throws CUnexpectedError  the thread can't be started
    void StartGetDeviceOfflineEventThread();
    /// Ends the wait and lets callbacks that run finish. Does nothing if it isn't started.
    void StopGetDeviceOfflineEventThread();

    /// Answers at once, also while callbacks run.
    bool IsDeviceOffline() const;
    void ClearOfflineFlag() { __SetOfflineFlag(false); }

    /// Of the thread, also when it has ended; 0 unless it is started.
    std::uint32_t GetThreadId() const { return m_pThread->GetThreadId(); }
    /// Whether the caller is a callback of the event: then a stop can't wait for it.
    bool IsInCallback() const { return m_pThread->IsCurrent(); }
    CNativeDeviceOfflineEvent* GetNativeEvent() { return &m_objNative; }

private:
    using CallbackPointer = std::shared_ptr<IDeviceOfflineCallback>;

    static std::uint32_t __OnThreadGetDeviceOfflineEvent(void* pEvent);
    void __SetOfflineFlag(bool bOffline);
    void __CallCallbacks();

    const boost::shared_ptr<CCriticalSection> m_pCallbackLock;  // guards m_vecCallback, also through the calls
    std::vector<CallbackPointer> m_vecCallback;                 // the clones; shared with a call that runs
    const boost::shared_ptr<CCriticalSection> m_pOfflineLock;   // guards m_bOffline
    bool m_bOffline = false;
    CCriticalSection m_csState;               // guards every change of the two below and of m_objNative, also the join
    std::atomic<bool> m_bRegistered = false;  // atomic, so that callbacks find out without m_csState
    std::atomic<bool> m_bStarted = false;     // stays set when the thread has ended by itself
    CNativeDeviceOfflineEvent m_objNative;
    const boost::shared_ptr<CThread> m_pThread;  // uses all the others
};
