#include "producer/modules/EventSource.h"

#include <string>
#include <utility>

#include "producer/ProducerError.h"

namespace producer {

void CEventSource::Offer(EVENT_TYPE nType, std::size_t nDataSizeMax, std::size_t nCapacity,
                         std::function<void()> funBefore) {
    const std::lock_guard objLock(m_mtxEntries);
    ENTRY& objEntry = m_mapEntry[nType];
    objEntry.nDataSizeMax = nDataSizeMax;
    objEntry.nCapacity = nCapacity;
    objEntry.funBefore = std::move(funBefore);
}

void CEventSource::Prepare(EVENT_TYPE nType) {
    std::function<void()> funBefore;
    {
        const std::lock_guard objLock(m_mtxEntries);
        if (const auto itEntry = m_mapEntry.find(nType); itEntry != m_mapEntry.end()) {
            funBefore = itEntry->second.funBefore;
        }
    }
    if (funBefore) {
        funBefore();
    }
}

void* CEventSource::Register(EVENT_TYPE nType) {
    Prepare(nType);
    const std::lock_guard objLock(m_mtxEntries);
    if (m_bClosed) {
        throw CProducerError(GC_ERR_INVALID_HANDLE, "the module was closed");
    }
    const auto itEntry = m_mapEntry.find(nType);
    if (itEntry == m_mapEntry.end()) {
        throw CProducerError(GC_ERR_NOT_IMPLEMENTED, "this module has no events of type " + std::to_string(nType));
    }
    ENTRY& objEntry = itEntry->second;
    if (objEntry.pQueue) {
        throw CProducerError(GC_ERR_RESOURCE_IN_USE,
                             "events of type " + std::to_string(nType) + " are registered already");
    }
    auto pQueue = std::make_shared<CEventQueue>(nType, objEntry.nDataSizeMax, objEntry.nCapacity);
    objEntry.hQueue = CHandleTable::Get().Add(pQueue);
    objEntry.pQueue = std::move(pQueue);
    if (objEntry.bOnceFired && !std::exchange(objEntry.bOnceDelivered, true)) {
        objEntry.pQueue->Post({});
    }
    return objEntry.hQueue;
}

void CEventSource::Retire(ENTRY& objEntry) {
    if (objEntry.pQueue) {
        CHandleTable::Get().Take(objEntry.hQueue);
        objEntry.pQueue->Close();
        objEntry.pQueue.reset();
    }
}

void CEventSource::Unregister(EVENT_TYPE nType) {
    const std::lock_guard objLock(m_mtxEntries);
    const auto itEntry = m_mapEntry.find(nType);
    if (itEntry == m_mapEntry.end() || !itEntry->second.pQueue) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER,
                             "events of type " + std::to_string(nType) + " aren't registered on this module");
    }
    Retire(itEntry->second);
}

bool CEventSource::Post(EVENT_TYPE nType, std::span<const std::byte> spanData) {
    const std::shared_ptr<CEventQueue> pQueue = PostQuietly(nType, spanData);
    if (pQueue) {
        pQueue->Wake();
    }
    return pQueue != nullptr;
}

std::shared_ptr<CEventQueue> CEventSource::PostQuietly(EVENT_TYPE nType, std::span<const std::byte> spanData) {
    const std::lock_guard objLock(m_mtxEntries);
    const auto itEntry = m_mapEntry.find(nType);
    if (itEntry == m_mapEntry.end() || !itEntry->second.pQueue) {
        return nullptr;
    }
    itEntry->second.pQueue->PostQuietly(spanData);
    return itEntry->second.pQueue;
}

std::size_t CEventSource::GetQueued(EVENT_TYPE nType) {
    const std::lock_guard objLock(m_mtxEntries);
    const auto itEntry = m_mapEntry.find(nType);
    return itEntry == m_mapEntry.end() || !itEntry->second.pQueue ? 0 : itEntry->second.pQueue->GetQueued();
}

void CEventSource::Flush(EVENT_TYPE nType) {
    const std::lock_guard objLock(m_mtxEntries);
    const auto itEntry = m_mapEntry.find(nType);
    if (itEntry != m_mapEntry.end() && itEntry->second.pQueue) {
        itEntry->second.pQueue->Flush();
    }
}

void CEventSource::PostOnce(EVENT_TYPE nType) {
    const std::lock_guard objLock(m_mtxEntries);
    const auto itEntry = m_mapEntry.find(nType);
    if (itEntry == m_mapEntry.end() || std::exchange(itEntry->second.bOnceFired, true)) {
        return;
    }
    if (itEntry->second.pQueue) {
        itEntry->second.bOnceDelivered = true;
        itEntry->second.pQueue->Post({});
    }
}

void CEventSource::Close() {
    const std::lock_guard objLock(m_mtxEntries);
    m_bClosed = true;
    for (auto& [nType, objEntry] : m_mapEntry) {
        Retire(objEntry);
    }
}

}  // namespace producer
