#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassEvent/RegisterEventAgency.h"
#include "TLClass/TLClassEvent/WaitGate.h"
#include "TLClass/TLClassInfo/BufferModuleInfo.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "TLClass/TLClassMain/UnCopyable.h"
#include "support/CriticalSection.h"

class CBuffer;
class CGenTLLib;

namespace GenApi_3_0 {
class CChunkAdapter;
}

/// The producer's event of a filled buffer on one data stream: registers it, waits for it, and turns it into the buffer
/// and what is known of the frame.
///
/// Part of CNewBufferEvent. GetBuffer may be called from any thread at any time, by several at once; all other
/// operations are for one thread at a time, which the lock of the data stream sees to. Those of them that take
/// something away first end the waits of GetBuffer.
class CNativeNewBufferEvent : public CUnCopyable {
public:
    /// @param pLib  not owned
    explicit CNativeNewBufferEvent(CGenTLLib* pLib) : m_pLib(pLib) {}
    ~CNativeNewBufferEvent() = default;

    /// From the opening of the stream to its closing. Does nothing if it is registered.
    /// @throws CZrException  by the result of the producer
    void RegisterEventBufferHandle(DS_HANDLE hDataStream);
    /// Does nothing if it isn't registered. A refusal of the producer is logged.
    void UnregisterEventBufferHandle();

    /// The frame description of the acquisition that starts, which is copied. Does nothing if there is one.
    /// @param pChunkAdapter  not owned
    void SetInitInfo(TLClass::IBufferInitInfo* pInitInfo, GenApi_3_0::CChunkAdapter* pChunkAdapter);
    void ClearInitInfo();

    /// The buffers that a frame may come in, until LetCallersOut. What else a producer gives as a user pointer is
    /// refused.
    void SetBuffers(std::vector<const void*> vecBuffer);

    /// Ends a wait for a frame.
    void EventKill();
    /// Ends the waits of GetBuffer, and returns when no call of it is under way. Later ones are let in again, and get
    /// no buffer until SetBuffers.
    void LetCallersOut();

    /// Waits for the next frame and takes its buffer, which the caller queues again. The buffer is good until the
    /// acquisition is stopped.
    /// @param pInformation  gets what is known of the frame; may be null
    /// @param bThrow        whether a status of the producer is thrown; otherwise it gives null
    /// @return owned by the data stream; null if nothing came
    /// @throws CTimeoutError     nothing came in time
    /// @throws CUnexpectedError  GC_ERR_ABORT: the acquisition was stopped; whatever bThrow says: the frame came
    ///                           without its user pointer, or with that of no buffer
    /// @throws CZrException      besides, by the result of the producer
    CBuffer* GetBuffer(BUFFER_MODULE_INFO* pInformation, std::uint32_t nTimeoutMs, bool bThrow);

    /// The same for the thread that is joined before anything is taken away, which tells statuses apart. Takes a leaf
    /// lock alone and allocates nothing.
    /// @param pBuffer  gets the buffer, also if an exception follows
    /// @return the status of the producer
    /// @throws CUnexpectedError  the frame came without its user pointer, or with that of no buffer
    GC_ERROR TakeBuffer(CBuffer*& pBuffer, BUFFER_MODULE_INFO& objInformation, std::uint32_t nTimeoutMs);

private:
    friend class CNativeNewBufferEventInspection;  // lets a test reach __UpdateChunkData

    class CGCRegisterEventAgency : public CRegisterEventAgency {
    public:
        CGCRegisterEventAgency(CGenTLLib* pLib, DS_HANDLE hDataStream, EVENT_HANDLE& hEvent)
            : CRegisterEventAgency(pLib, hDataStream, EVENT_NEW_BUFFER, hEvent,
                                   "CNativeNewBufferEvent::CGCRegisterEventAgency") {}
    };

    GC_ERROR __WaitForFrame(EVENT_NEW_BUFFER_DATA& objData, std::uint32_t nTimeoutMs);
    bool __IsBuffer(const void* pUserPointer) const;
    void __ApplyInitInfo(BUFFER_MODULE_INFO& objInformation) const;
    /// Puts the chunks of a buffer behind the chunk adapter's node map. Not called yet: the step between GetBuffer and
    /// a user who wants chunk features.
    /// @throws CUnexpectedError  there is no adapter, or a chunk reaches out of the buffer
    void __UpdateChunkData(CBuffer* pBuffer);

    CGenTLLib* const m_pLib;
    CWaitGate m_objGate;  // callers of GetBuffer; what they read changes only while it is closed and empty
    DS_HANDLE m_hDataStream = nullptr;
    EVENT_HANDLE m_hEvent = nullptr;
    std::atomic<bool> m_bInitInfoSet = false;  // says that the three below may be read
    TLClass::CBufferInitInfo m_objInitInfo;
    GenApi_3_0::CChunkAdapter* m_pChunkAdapter = nullptr;
    std::vector<SINGLE_CHUNK_DATA> m_vecChunkData;  // the layout last attached
    mutable CCriticalSection m_csBuffer;            // guards m_vecBuffer; a leaf
    std::vector<const void*> m_vecBuffer;           // by address
    bool m_bRegistered = false;
    bool m_bKilled = false;                // since the last start
    std::atomic<bool> m_bOldKill = false;  // a kill of an earlier acquisition may still wait in the producer
};
