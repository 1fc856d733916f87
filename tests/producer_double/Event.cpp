#include "tests/producer_double/Event.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace ProducerDouble {

namespace {

// Longer waits count as endless, so that the clock's arithmetic can't overflow.
constexpr std::uint64_t kLongestTimedWaitMs = std::uint64_t{1} << 40;

}  // namespace

void CRecordQueue::Push(BYTES vecRecord) {
    m_queRecord.push_back(std::move(vecRecord));
}

void CRecordQueue::Declare(std::size_t nMaxSize, std::size_t nMaxValueSize) {
    m_nMaxSize = nMaxSize;
    m_nMaxValueSize = nMaxValueSize;
}

void CRecordQueue::Take(std::byte* pBuffer) {
    std::copy(m_queRecord.front().begin(), m_queRecord.front().end(), pBuffer);
    m_queRecord.pop_front();
}

CEvent::CEvent(CONTEXT& objContext, std::shared_ptr<CHandled> pSource, std::string strName, EVENT_TYPE nType,
               IEventQueue& objQueue)
    : m_objContext(objContext),
      m_pSource(std::move(pSource)),
      m_strName(std::move(strName)),
      m_nType(nType),
      m_objQueue(objQueue) {}

void CEvent::GetData(LOCK& lock, void* pBuffer, std::size_t* pSize, std::uint64_t nTimeoutMs) {
    if (pSize == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "no place for the size");
    }
    __AwaitRecord(lock, nTimeoutMs);
    const std::size_t nSize = m_objQueue.NextSize();
    const bool bTake = pBuffer != nullptr || nSize == 0;
    if (bTake && *pSize < nSize) {
        Refuse(GC_ERR_BUFFER_TOO_SMALL, "the buffer is too small for the event");
    }
    if (bTake) {
        m_objQueue.Take(static_cast<std::byte*>(pBuffer));
    }
    *pSize = nSize;
}

void CEvent::__AwaitRecord(LOCK& lock, std::uint64_t nTimeoutMs) {
    if (m_bKillKept) {
        m_bKillKept = false;
        Refuse(GC_ERR_ABORT, "the wait was ended before it began");
    }
    const auto nKills = m_nKills;
    const auto IsOver = [&] { return m_bUnregistered || m_nKills != nKills || m_objQueue.Waiting() > 0; };
    MONITOR& objMonitor = m_objContext.objMonitor;
    if (!IsOver()) {
        ++m_nWaiters;
        objMonitor.changed.notify_all();  // a test may wait for the waiter
        if (nTimeoutMs > kLongestTimedWaitMs) {
            objMonitor.changed.wait(lock, IsOver);
        } else {
            objMonitor.changed.wait_for(lock, std::chrono::milliseconds(nTimeoutMs), IsOver);
        }
        --m_nWaiters;
    }
    if (m_bUnregistered || m_nKills != nKills) {
        Refuse(GC_ERR_ABORT, "the wait was ended");
    }
    if (m_objQueue.Waiting() == 0) {
        Refuse(GC_ERR_TIMEOUT, "no event within the time-out");
    }
}

void CEvent::Kill() {
    if (m_nWaiters == 0) {
        m_bKillKept = true;
    } else {
        ++m_nKills;
    }
    m_objContext.objMonitor.changed.notify_all();
}

void CEvent::Unregister() {
    m_bUnregistered = true;
    m_objContext.objMonitor.changed.notify_all();
}

void CEvent::GetInfo(EVENT_INFO_CMD nCommand, const TARGET& objTarget) {
    switch (nCommand) {
        case EVENT_NUM_IN_QUEUE:
            return PutValue(objTarget, INFO_DATATYPE_SIZET, m_objQueue.Waiting());
        case EVENT_SIZE_MAX:
            return PutValue(objTarget, INFO_DATATYPE_SIZET, m_objQueue.MaxSize());
        case EVENT_INFO_DATA_SIZE_MAX:
            return PutValue(objTarget, INFO_DATATYPE_SIZET, m_objQueue.MaxValueSize());
        default:
            Refuse(GC_ERR_NOT_IMPLEMENTED, "the event doesn't know this command");
    }
}

void CEvent::GetDataInfo(std::span<const std::byte> data, EVENT_DATA_INFO_CMD nCommand, const TARGET& objTarget) const {
    if (m_nType == EVENT_REMOTE_DEVICE && data.size() >= sizeof(std::uint64_t)) {
        std::uint64_t nId = 0;
        std::memcpy(&nId, data.data(), sizeof(nId));
        if (nCommand == EVENT_DATA_NUMID) {
            return PutValue(objTarget, INFO_DATATYPE_UINT64, nId);
        }
        if (nCommand == EVENT_DATA_VALUE) {
            return PutBytes(objTarget, INFO_DATATYPE_BUFFER, data.subspan(sizeof(nId)));
        }
    }
    Refuse(GC_ERR_NO_DATA, "the event's data doesn't tell this");
}

BYTES RemoteEventRecord(std::uint64_t nId, std::span<const std::byte> value) {
    BYTES vecRecord(sizeof(nId) + value.size());
    std::memcpy(vecRecord.data(), &nId, sizeof(nId));
    std::copy(value.begin(), value.end(), vecRecord.begin() + sizeof(nId));
    return vecRecord;
}

}  // namespace ProducerDouble
