#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

#include "GenTL/GenTL.h"
#include "producer/modules/HandleTable.h"
#include "producer/modules/InfoValue.h"

namespace producer {

/// One registered event: a bounded queue of what came, and the consumer's threads that wait for it.
///
/// Owned by the CEventSource on which it is registered; calls that are under way hold it too, so that it may be closed
/// beneath them. Any thread may call. Posting allocates nothing: the queue's memory is taken when it is made.
class CEventQueue : public CHandled {
public:
    /// @param nDataSizeMax  bytes of the largest event; 0 for events whose arrival is the whole message
    /// @param nCapacity     events kept; a further one pushes the oldest out
    CEventQueue(EVENT_TYPE nType, std::size_t nDataSizeMax, std::size_t nCapacity);

    /// Queues an event and wakes one waiter. What is longer than the largest event is cut.
    void Post(std::span<const std::byte> spanData);
    /// As Post, but wakes nobody. Wake is to follow, once the caller has let go of locks that the waiter needs next.
    void PostQuietly(std::span<const std::byte> spanData);
    void Wake() { m_objSignal.notify_one(); }

    /// Waits for an event and hands it out. Events without data take a null buffer of size 0; for events with data a
    /// null buffer gives the size of the next one, which stays.
    /// @param nTimeoutMs  GENTL_INFINITE waits without limit
    /// @param pSize       in: bytes of the buffer; out: bytes of the event
    /// @throws CProducerError  GC_ERR_TIMEOUT; GC_ERR_ABORT after a kill or a close; GC_ERR_BUFFER_TOO_SMALL, the event
    ///                         stays; GC_ERR_INVALID_PARAMETER without a size
    void GetData(void* pBuffer, std::size_t* pSize, std::uint64_t nTimeoutMs);

    /// Ends one wait for each call. With nobody waiting, it is remembered for the next.
    void Kill();

    /// Forgets what is queued.
    void Flush();

    /// Ends every wait, now and from now on.
    void Close();

    std::size_t GetQueued() const;
    EVENT_TYPE GetType() const { return m_nType; }

    /// @throws CProducerError  GC_ERR_NOT_AVAILABLE for a command that isn't known
    CInfoValue GetInfo(EVENT_INFO_CMD nCommand) const;

private:
    bool WaitForSignal(std::unique_lock<std::mutex>& objLock, std::uint64_t nTimeoutMs);
    void HandOut(void* pBuffer, std::size_t* pSize);
    void DropOldest();

    const EVENT_TYPE m_nType;
    const std::size_t m_nDataSizeMax;
    const std::size_t m_nCapacity;

    mutable std::mutex m_mtxQueue;  // guards all below
    std::condition_variable m_objSignal;
    std::vector<std::byte> m_vecData;    // m_nCapacity places of m_nDataSizeMax bytes
    std::vector<std::size_t> m_vecSize;  // bytes used of each place
    std::size_t m_nFirst = 0;            // place of the oldest
    std::size_t m_nQueued = 0;
    std::uint64_t m_nFired = 0;  // events ever queued
    std::size_t m_nWaiting = 0;
    std::size_t m_nKills = 0;  // kills that no wait has taken yet; never above m_nWaiting, or 1
    bool m_bClosed = false;
};

}  // namespace producer
