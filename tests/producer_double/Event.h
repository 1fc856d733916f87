#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "tests/producer_double/Answering.h"
#include "tests/producer_double/Handles.h"

namespace ProducerDouble {

/// The records that wait behind one event. All operations expect the monitor's lock.
class IEventQueue {
public:
    virtual std::size_t Waiting() = 0;         ///< may fill the queue on its way
    virtual std::size_t NextSize() const = 0;  ///< bytes of the first record, which must be there
    virtual void Take(std::byte* pBuffer) = 0;
    virtual void Clear() = 0;
    virtual std::size_t MaxSize() const = 0;
    virtual std::size_t MaxValueSize() const = 0;

protected:
    ~IEventQueue() = default;
};

/// Records of bytes: the camera's own events, and with empty records an event that carries nothing.
class CRecordQueue : public IEventQueue {
public:
    void Push(BYTES vecRecord);
    void Declare(std::size_t nMaxSize, std::size_t nMaxValueSize);

    std::size_t Waiting() override { return m_queRecord.size(); }
    std::size_t NextSize() const override { return m_queRecord.front().size(); }
    void Take(std::byte* pBuffer) override;
    void Clear() override { m_queRecord.clear(); }
    std::size_t MaxSize() const override { return m_nMaxSize; }
    std::size_t MaxValueSize() const override { return m_nMaxValueSize; }

private:
    std::deque<BYTES> m_queRecord;
    std::size_t m_nMaxSize = 0;
    std::size_t m_nMaxValueSize = 0;
};

/// A registered event of a module. Lives until it is unregistered or its module is closed, and beyond that until the
/// last wait in it has returned. All operations expect the monitor's lock.
class CEvent : public CHandled {
public:
    CEvent(CONTEXT& objContext, std::shared_ptr<CHandled> pSource, std::string strName, EVENT_TYPE nType,
           IEventQueue& objQueue);

    const std::string& HandledName() const override { return m_strName; }
    std::size_t Waiters() const { return m_nWaiters; }

    /// Waits for a record without holding the lock. A null buffer takes a record of no bytes, and asks for the size of
    /// any other.
    void GetData(LOCK& lock, void* pBuffer, std::size_t* pSize, std::uint64_t nTimeoutMs);
    /// Ends all waits; without any, the next one.
    void Kill();
    void Flush() { m_objQueue.Clear(); }
    /// Ends all waits for good.
    void Unregister();
    void GetInfo(EVENT_INFO_CMD nCommand, const TARGET& objTarget);
    void GetDataInfo(std::span<const std::byte> data, EVENT_DATA_INFO_CMD nCommand, const TARGET& objTarget) const;

private:
    void __AwaitRecord(LOCK& lock, std::uint64_t nTimeoutMs);

    CONTEXT& m_objContext;
    const std::shared_ptr<CHandled> m_pSource;  // owns the queue
    const std::string m_strName;
    const EVENT_TYPE m_nType;
    IEventQueue& m_objQueue;
    std::size_t m_nWaiters = 0;
    std::uint64_t m_nKills = 0;  // a wait ends when this number has moved
    bool m_bKillKept = false;
    bool m_bUnregistered = false;
};

/// A camera's event as EventGetData hands it out.
BYTES RemoteEventRecord(std::uint64_t nId, std::span<const std::byte> value);

}  // namespace ProducerDouble
