#include "producer/modules/EventQueue.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string>

#include "producer/ProducerError.h"
#include "producer/modules/EventData.h"

namespace producer {

namespace {

// A longer wait counts as one without limit: the clock's own arithmetic would overflow some time beyond it.
constexpr std::chrono::milliseconds kLongestWait = std::chrono::hours(24 * 365);

}  // namespace

CEventQueue::CEventQueue(EVENT_TYPE nType, std::size_t nDataSizeMax, std::size_t nCapacity)
    : m_nType(nType),
      m_nDataSizeMax(nDataSizeMax),
      m_nCapacity(nCapacity),
      m_vecData(nDataSizeMax * nCapacity),
      m_vecSize(nCapacity) {}

void CEventQueue::DropOldest() {
    m_nFirst = (m_nFirst + 1) % m_nCapacity;
    --m_nQueued;
}

void CEventQueue::Post(std::span<const std::byte> spanData) {
    PostQuietly(spanData);
    Wake();
}

void CEventQueue::PostQuietly(std::span<const std::byte> spanData) {
    const std::lock_guard objLock(m_mtxQueue);
    if (m_bClosed) {
        return;
    }
    if (m_nQueued == m_nCapacity) {
        DropOldest();
    }
    const std::size_t nPlace = (m_nFirst + m_nQueued) % m_nCapacity;
    m_vecSize[nPlace] = std::min(spanData.size(), m_nDataSizeMax);
    if (m_vecSize[nPlace] != 0) {
        std::memcpy(&m_vecData[nPlace * m_nDataSizeMax], spanData.data(), m_vecSize[nPlace]);
    }
    ++m_nQueued;
    ++m_nFired;
}

bool CEventQueue::WaitForSignal(std::unique_lock<std::mutex>& objLock, std::uint64_t nTimeoutMs) {
    const auto funSignalled = [this] { return m_bClosed || m_nKills != 0 || m_nQueued != 0; };
    if (nTimeoutMs >= static_cast<std::uint64_t>(kLongestWait.count())) {
        m_objSignal.wait(objLock, funSignalled);
        return true;
    }
    const auto tEnd = std::chrono::steady_clock::now() + std::chrono::milliseconds(nTimeoutMs);
    return m_objSignal.wait_until(objLock, tEnd, funSignalled);
}

void CEventQueue::GetData(void* pBuffer, std::size_t* pSize, std::uint64_t nTimeoutMs) {
    if (pSize == nullptr) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, "the pointer to the size is null");
    }
    std::unique_lock objLock(m_mtxQueue);
    ++m_nWaiting;
    const bool bSignalled = WaitForSignal(objLock, nTimeoutMs);
    --m_nWaiting;
    if (m_bClosed) {
        throw CProducerError(GC_ERR_ABORT, "the event was unregistered");
    }
    if (m_nKills != 0) {
        --m_nKills;
        throw CProducerError(GC_ERR_ABORT, "the wait was ended by EventKill");
    }
    if (!bSignalled) {
        throw CProducerError(GC_ERR_TIMEOUT, "no event came within " + std::to_string(nTimeoutMs) + " ms");
    }
    HandOut(pBuffer, pSize);
}

void CEventQueue::HandOut(void* pBuffer, std::size_t* pSize) {
    const std::size_t nSize = m_vecSize[m_nFirst];
    if (nSize != 0) {
        if (pBuffer == nullptr || *pSize < nSize) {
            m_objSignal.notify_one();  // the event stays, and somebody else may have brought a buffer for it
        }
        if (pBuffer == nullptr) {
            *pSize = nSize;
            return;
        }
        if (*pSize < nSize) {
            throw CProducerError(GC_ERR_BUFFER_TOO_SMALL, "the buffer has " + std::to_string(*pSize) +
                                                              " bytes, the event " + std::to_string(nSize));
        }
        std::memcpy(pBuffer, &m_vecData[m_nFirst * m_nDataSizeMax], nSize);
    }
    *pSize = nSize;
    DropOldest();
}

void CEventQueue::Kill() {
    {
        const std::lock_guard objLock(m_mtxQueue);
        m_nKills = std::min(m_nKills + 1, std::max<std::size_t>(m_nWaiting, 1));
    }
    m_objSignal.notify_one();
}

void CEventQueue::Flush() {
    const std::lock_guard objLock(m_mtxQueue);
    m_nQueued = 0;
}

void CEventQueue::Close() {
    {
        const std::lock_guard objLock(m_mtxQueue);
        m_bClosed = true;
    }
    m_objSignal.notify_all();
}

std::size_t CEventQueue::GetQueued() const {
    const std::lock_guard objLock(m_mtxQueue);
    return m_nQueued;
}

CInfoValue CEventQueue::GetInfo(EVENT_INFO_CMD nCommand) const {
    const std::lock_guard objLock(m_mtxQueue);
    switch (nCommand) {
        case EVENT_EVENT_TYPE:
            return CInfoValue::Int32(m_nType);
        case EVENT_NUM_IN_QUEUE:
            return CInfoValue::Size(m_nQueued);
        case EVENT_NUM_FIRED:
            return CInfoValue::Uint64(m_nFired);
        case EVENT_SIZE_MAX:
            return CInfoValue::Size(m_nDataSizeMax);
        case EVENT_INFO_DATA_SIZE_MAX:
            return CInfoValue::Size(EventValueSizeMax(m_nType));
        default:
            throw CProducerError(GC_ERR_NOT_AVAILABLE, "an event has no info command " + std::to_string(nCommand));
    }
}

}  // namespace producer
