#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>

#include "GenTL/GenTL.h"
#include "producer/modules/EventQueue.h"

namespace producer {

/// The events of one module: which may be registered, and the queues of those that are.
///
/// Owned by its module. Any thread may call.
class CEventSource {
public:
    CEventSource() = default;
    ~CEventSource() { Close(); }
    CEventSource(const CEventSource&) = delete;
    CEventSource& operator=(const CEventSource&) = delete;

    /// Lets consumers register events of a type. To be called before the module gets its handle.
    /// @param funBefore  called before each registration, without a lock held; what it throws, Register throws
    void Offer(EVENT_TYPE nType, std::size_t nDataSizeMax, std::size_t nCapacity,
               std::function<void()> funBefore = nullptr);

    /// Gives the event a handle.
    /// @throws CProducerError  GC_ERR_NOT_IMPLEMENTED, GC_ERR_RESOURCE_IN_USE, GC_ERR_INVALID_HANDLE once closed
    void* Register(EVENT_TYPE nType);

    /// Ends the waits on the event and its handle.
    /// @throws CProducerError  GC_ERR_INVALID_PARAMETER for an event that isn't registered
    void Unregister(EVENT_TYPE nType);

    /// Queues an event, if a consumer has registered it.
    /// @return whether one has.
    bool Post(EVENT_TYPE nType, std::span<const std::byte> spanData = {});
    /// As Post, but wakes nobody.
    /// @return the queue, of which Wake is to be called; null when no consumer has registered the event
    [[nodiscard]] std::shared_ptr<CEventQueue> PostQuietly(EVENT_TYPE nType, std::span<const std::byte> spanData);

    /// @return events that wait to be fetched; 0 when the event isn't registered.
    std::size_t GetQueued(EVENT_TYPE nType);

    /// Forgets the events that wait to be fetched.
    void Flush(EVENT_TYPE nType);

    /// Queues an event once in the life of this object: at once, or when it is first registered.
    void PostOnce(EVENT_TYPE nType);

    /// Unregisters all, for good.
    void Close();

private:
    struct ENTRY {
        std::size_t nDataSizeMax = 0;
        std::size_t nCapacity = 0;
        std::function<void()> funBefore;
        bool bOnceFired = false;              // PostOnce was called
        bool bOnceDelivered = false;          // and its event went to a queue
        std::shared_ptr<CEventQueue> pQueue;  // null unless registered
        void* hQueue = nullptr;
    };

    void Prepare(EVENT_TYPE nType);
    static void Retire(ENTRY& objEntry);

    std::mutex m_mtxEntries;  // guards the two below; taken before a queue's lock and the handle table's
    std::map<EVENT_TYPE, ENTRY> m_mapEntry;
    bool m_bClosed = false;
};

}  // namespace producer
