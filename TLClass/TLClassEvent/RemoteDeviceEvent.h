#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <boost/shared_ptr.hpp>

#include "GenApi/EventAdapterGeneric.h"
#include "GenApi/NodeMapRef.h"
#include "GenTL/GenTL.h"
#include "TLClass/TLClassMain/UnCopyable.h"
#include "support/CriticalSection.h"
#include "support/Event.h"
#include "support/Thread.h"

class CGenTLLib;

/// Brings the events that a camera sends, such as the end of an exposure, into its node map, whose nodes then call
/// their callbacks.
///
/// Part of its device, which starts it when asked and stops it with its close, before the node map goes. Any thread may
/// call.
///
/// The thread polls: each pass waits for an event for at most a second. Node callbacks run on it, with the node map's
/// lock held as far as they asked for that. They may call the last two operations. They must not start or stop the
/// event or close the device: the stop waits for its thread. For the same reason nobody may stop it who holds the node
/// map's lock. A bad event is logged and passed over.
class CRemoteDeviceEvent : public CUnCopyable {
public:
    /// The most bytes that a producer may declare for an event or for its value.
    static constexpr std::size_t kMaxEventSize = std::size_t{16} << 20U;

    /// @param pLib  not owned
    explicit CRemoteDeviceEvent(CGenTLLib* pLib);
    /// Stops.
    virtual ~CRemoteDeviceEvent();

    /// Does nothing if it is started. A producer without the event is no failure: it gets a line in the log, and
    /// nothing is started. So it is with a node map that refuses.
    /// @param hDevice      the device itself, not the camera's port
    /// @param pNodeMapRef  of the camera; not owned, must live until the stop
    /// @throws CZrException      by the result of the producer
    /// @throws CUnexpectedError  the thread can't be started, or the producer declares sizes beyond kMaxEventSize
    void StartGetRemoteDeviceEventThread(DEV_HANDLE hDevice, GenApi_3_0::CNodeMapRef* pNodeMapRef);
    /// Ends the wait and lets callbacks that run finish. Does nothing if it isn't started. Never throws.
    void StopGetRemoteDeviceEventThread();

    /// Drops the events that wait to be delivered. Does nothing unless started.
    /// @throws CZrException  by the result of the producer
    void FlushRemoteDeviceEvent();
    /// How many events wait to be delivered; 0 unless started.
    /// @throws CZrException  by the result of the producer
    std::uint64_t GetEventNumInQueue();

    /// Of the thread; 0 unless started.
    std::uint32_t GetThreadId() const { return m_pThread->GetThreadId(); }
    /// Whether the caller is a callback of the event: then a stop can't wait for it.
    bool IsInCallback() const { return m_pThread->IsCurrent(); }

private:
    class CAttachNodeMapAgency;
    class CGCRegisterEventAgency;

    void __Start(DEV_HANDLE hDevice, GenApi_3_0::INodeMap* pNodeMap);
    void __AllocateArrays(EVENT_HANDLE hEvent);
    std::size_t __ReadMaxSize(EVENT_HANDLE hEvent, EVENT_INFO_CMD nCommand);
    void __FreeArrays();
    void __PublishEvent(EVENT_HANDLE hEvent);

    static std::uint32_t __OnThreadGetRemoteDeviceEvent(void* pEvent);
    bool __DeliverOne();
    bool __Deliver(EVENT_HANDLE hEvent, std::size_t nDataSize);

    CGenTLLib* const m_pLib;
    CCriticalSection m_csState;  // guards the start and the stop, also the join, and m_bStarted and m_hDevice with them
    bool m_bStarted = false;
    DEV_HANDLE m_hDevice = nullptr;
    CCriticalSection m_csEvent;       // guards m_hEvent and calls with it beside the thread; a leaf behind m_csState
    EVENT_HANDLE m_hEvent = nullptr;  // while started; the thread needs no lock, as it changes only without a thread
    // The thread's own between start and stop.
    GenApi_3_0::CEventAdapterGeneric m_objEventAdapter;
    std::unique_ptr<std::uint8_t[]> m_pEventData;  // an event as a whole
    std::size_t m_nEventDataSize = 0;
    std::unique_ptr<std::uint8_t[]> m_pEventInfoData;  // its value
    std::size_t m_nEventInfoDataSize = 0;
    const boost::shared_ptr<CEvent> m_pStopEvent;
    const boost::shared_ptr<CThread> m_pThread;  // uses all the others
};
