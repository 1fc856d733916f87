#include "producer/modules/BufferPool.h"

#include <algorithm>
#include <string>
#include <utility>

#include "producer/ProducerError.h"

namespace producer {

void CBufferPool::RevokeAll() noexcept {
    const std::lock_guard objLock(m_mtxPool);
    for (const auto& pBuffer : m_vecBuffer) {
        CHandleTable::Get().Take(pBuffer->m_hBuffer);
    }
    m_vecInput.clear();
    m_vecOutput.clear();
    m_vecBuffer.clear();
}

CStreamBuffer& CBufferPool::Require(void* hBuffer) {
    const auto itBuffer =
        std::ranges::find_if(m_vecBuffer, [&](const auto& pBuffer) { return pBuffer->m_hBuffer == hBuffer; });
    if (hBuffer == nullptr || itBuffer == m_vecBuffer.end()) {
        throw CProducerError(GC_ERR_INVALID_HANDLE, "this is no buffer that is announced to the stream");
    }
    return **itBuffer;
}

/// Lets go of the buffers whose events have been fetched, or thrown away: those that were put out first.
void CBufferPool::FollowOutput() {
    const std::size_t nQueued = m_objEvents.GetQueued(EVENT_NEW_BUFFER);
    const std::size_t nFetched = m_vecOutput.size() - std::min(nQueued, m_vecOutput.size());
    const auto itRest = m_vecOutput.begin() + static_cast<std::ptrdiff_t>(nFetched);
    std::for_each(m_vecOutput.begin(), itRest,
                  [](CStreamBuffer* pBuffer) { pBuffer->m_ePlace = BUFFER_PLACE::Unqueued; });
    m_vecOutput.erase(m_vecOutput.begin(), itRest);
}

/// @return the queue that the buffer's event was put into, whose waiter is still to be woken; null without one
std::shared_ptr<CEventQueue> CBufferPool::PutOut(CStreamBuffer& objBuffer) {
    FollowOutput();
    objBuffer.m_ePlace = BUFFER_PLACE::Output;
    m_vecOutput.push_back(&objBuffer);
    const EVENT_NEW_BUFFER_DATA objData{objBuffer.m_hBuffer, objBuffer.GetUserPointer()};
    return m_objEvents.PostQuietly(EVENT_NEW_BUFFER, std::as_bytes(std::span(&objData, 1)));
}

void CBufferPool::PutIn(CStreamBuffer& objBuffer) {
    objBuffer.Clear();
    objBuffer.m_ePlace = BUFFER_PLACE::Input;
    m_vecInput.push_back(&objBuffer);
}

/// What is being filled isn't taken away from the receiver's thread, but goes there instead of being put out.
void CBufferPool::Redirect(BUFFER_PLACE eNext) {
    for (const auto& pBuffer : m_vecBuffer) {
        if (pBuffer->m_ePlace == BUFFER_PLACE::Filling) {
            pBuffer->m_eNext = eNext;
        }
    }
}

void CBufferPool::DiscardOutput() {
    m_objEvents.Flush(EVENT_NEW_BUFFER);
    FollowOutput();
}

void* CBufferPool::Announce(std::shared_ptr<CStreamBuffer> pBuffer) {
    const std::lock_guard objLock(m_mtxPool);
    if (m_vecBuffer.size() == kMostBuffers) {
        throw CProducerError(GC_ERR_RESOURCE_EXHAUSTED,
                             "no more than " + std::to_string(kMostBuffers) + " buffers can be announced to a stream");
    }
    const std::byte* const pMemory = pBuffer->GetMemory().data();
    if (std::ranges::any_of(m_vecBuffer, [&](const auto& pKnown) { return pKnown->GetMemory().data() == pMemory; })) {
        throw CProducerError(GC_ERR_RESOURCE_IN_USE, "this memory is announced already");
    }
    for (auto* const pQueue : {&m_vecInput, &m_vecOutput}) {
        pQueue->reserve(m_vecBuffer.size() + 1);
    }
    m_vecBuffer.reserve(m_vecBuffer.size() + 1);
    pBuffer->m_hBuffer = CHandleTable::Get().Add(pBuffer);
    m_vecBuffer.push_back(std::move(pBuffer));
    return m_vecBuffer.back()->m_hBuffer;
}

std::shared_ptr<CStreamBuffer> CBufferPool::Revoke(void* hBuffer) {
    const std::lock_guard objLock(m_mtxPool);
    FollowOutput();
    CStreamBuffer& objBuffer = Require(hBuffer);
    if (objBuffer.m_ePlace != BUFFER_PLACE::Unqueued) {
        throw CProducerError(GC_ERR_BUSY,
                             "the buffer is queued: stop the acquisition and flush the queues before it is revoked");
    }
    const auto itBuffer =
        std::ranges::find_if(m_vecBuffer, [&](const auto& pBuffer) { return pBuffer.get() == &objBuffer; });
    std::shared_ptr<CStreamBuffer> pBuffer = std::move(*itBuffer);
    m_vecBuffer.erase(itBuffer);
    CHandleTable::Get().Take(hBuffer);
    return pBuffer;
}

void CBufferPool::Queue(void* hBuffer) {
    const std::lock_guard objLock(m_mtxPool);
    FollowOutput();
    CStreamBuffer& objBuffer = Require(hBuffer);
    if (objBuffer.m_ePlace == BUFFER_PLACE::Filling && objBuffer.m_eNext == BUFFER_PLACE::Unqueued) {
        objBuffer.m_eNext = BUFFER_PLACE::Input;
        return;
    }
    if (objBuffer.m_ePlace != BUFFER_PLACE::Unqueued) {
        throw CProducerError(GC_ERR_RESOURCE_IN_USE, "the buffer is queued already");
    }
    PutIn(objBuffer);
}

void CBufferPool::Flush(ACQ_QUEUE_TYPE nOperation) {
    const std::lock_guard objLock(m_mtxPool);
    FollowOutput();
    const auto funUnqueuedToInput = [this] {
        for (const auto& pBuffer : m_vecBuffer) {
            if (pBuffer->m_ePlace == BUFFER_PLACE::Unqueued) {
                PutIn(*pBuffer);
            }
        }
    };
    switch (nOperation) {
        case ACQ_QUEUE_INPUT_TO_OUTPUT:
            for (CStreamBuffer* const pBuffer : m_vecInput) {
                if (const std::shared_ptr<CEventQueue> pQueue = PutOut(*pBuffer)) {
                    pQueue->Wake();
                }
            }
            m_vecInput.clear();
            break;
        case ACQ_QUEUE_OUTPUT_DISCARD:
            DiscardOutput();
            break;
        case ACQ_QUEUE_ALL_TO_INPUT:
            DiscardOutput();
            funUnqueuedToInput();
            Redirect(BUFFER_PLACE::Input);
            break;
        case ACQ_QUEUE_UNQUEUED_TO_INPUT:
            funUnqueuedToInput();
            break;
        case ACQ_QUEUE_ALL_DISCARD:
            DiscardOutput();
            for (CStreamBuffer* const pBuffer : m_vecInput) {
                pBuffer->m_ePlace = BUFFER_PLACE::Unqueued;
            }
            m_vecInput.clear();
            Redirect(BUFFER_PLACE::Unqueued);
            break;
        default:
            throw CProducerError(GC_ERR_INVALID_PARAMETER, "there is no queue operation " + std::to_string(nOperation));
    }
}

CInfoValue CBufferPool::GetInfo(void* hBuffer, BUFFER_INFO_CMD nCommand) {
    const std::lock_guard objLock(m_mtxPool);
    if (nCommand == BUFFER_INFO_IS_QUEUED) {
        FollowOutput();
    }
    return Require(hBuffer).GetInfo(nCommand);
}

std::vector<SINGLE_CHUNK_DATA> CBufferPool::GetChunks(void* hBuffer) {
    const std::lock_guard objLock(m_mtxPool);
    const CStreamBuffer& objBuffer = Require(hBuffer);
    if (objBuffer.m_ePlace == BUFFER_PLACE::Filling) {
        throw CProducerError(GC_ERR_BUSY, "the buffer is being filled");
    }
    return objBuffer.GetChunks();
}

void* CBufferPool::GetHandle(std::uint32_t nIndex) {
    const std::lock_guard objLock(m_mtxPool);
    if (nIndex >= m_vecBuffer.size()) {
        throw CProducerError(
            GC_ERR_INVALID_INDEX,
            std::to_string(m_vecBuffer.size()) + " buffers are announced, none with index " + std::to_string(nIndex));
    }
    return m_vecBuffer[nIndex]->m_hBuffer;
}

BUFFER_COUNTS CBufferPool::GetCounts() {
    const std::lock_guard objLock(m_mtxPool);
    FollowOutput();
    const auto nFilling = std::ranges::count_if(
        m_vecBuffer, [](const auto& pBuffer) { return pBuffer->m_ePlace == BUFFER_PLACE::Filling; });
    m_objCounts.Announced = m_vecBuffer.size();
    m_objCounts.Queued = m_vecInput.size() + static_cast<std::size_t>(nFilling);
    m_objCounts.AwaitDelivery = m_vecOutput.size();
    return m_objCounts;
}

void CBufferPool::Start(std::uint64_t nFrames, std::uint64_t nTickFrequency) {
    const std::lock_guard objLock(m_mtxPool);
    m_nFramesLeft = m_nUndelivered = nFrames;
    m_nTickFrequency = nTickFrequency;
}

bool CBufferPool::IsThrough() {
    const std::lock_guard objLock(m_mtxPool);
    return m_nUndelivered == 0;
}

BLOCK_MEMORY CBufferPool::TakeMemory() {
    const std::lock_guard objLock(m_mtxPool);
    if (m_vecInput.empty() || m_nFramesLeft == 0) {
        m_objCounts.Underruns += m_nFramesLeft == 0 ? 0 : 1;
        return {{}, nullptr, m_nFramesLeft == 0};
    }
    ++m_objCounts.Started;
    CStreamBuffer* const pBuffer = m_vecInput.front();
    m_vecInput.erase(m_vecInput.begin());
    pBuffer->m_ePlace = BUFFER_PLACE::Filling;
    pBuffer->m_eNext = BUFFER_PLACE::Output;
    m_nFramesLeft -= m_nFramesLeft == GENTL_INFINITE ? 0 : 1;
    return {pBuffer->GetMemory(), pBuffer};
}

void CBufferPool::ReturnMemory(const BLOCK_MEMORY& objMemory) {
    const std::lock_guard objLock(m_mtxPool);
    auto* const pBuffer = static_cast<CStreamBuffer*>(objMemory.Owner);
    if (pBuffer->m_eNext == BUFFER_PLACE::Unqueued) {
        pBuffer->m_ePlace = BUFFER_PLACE::Unqueued;
    } else {
        pBuffer->m_ePlace = BUFFER_PLACE::Input;
        m_vecInput.insert(m_vecInput.begin(), pBuffer);
    }
    m_nFramesLeft += m_nFramesLeft == GENTL_INFINITE ? 0 : 1;
}

void CBufferPool::DeliverBlock(const FINISHED_BLOCK& objBlock) {
    std::shared_ptr<CEventQueue> pQueue;
    {
        const std::lock_guard objLock(m_mtxPool);
        auto* const pBuffer = static_cast<CStreamBuffer*>(objBlock.Memory.Owner);
        ++m_objCounts.Delivered;
        m_nUndelivered -= m_nUndelivered == GENTL_INFINITE ? 0 : 1;
        if (pBuffer->m_eNext == BUFFER_PLACE::Output) {
            pBuffer->Fill(objBlock, m_nTickFrequency);
            pQueue = PutOut(*pBuffer);
        } else if (pBuffer->m_eNext == BUFFER_PLACE::Input) {
            PutIn(*pBuffer);
        } else {
            pBuffer->m_ePlace = BUFFER_PLACE::Unqueued;
        }
    }
    // The waiter asks about the buffer at once: woken under the lock, it would only wait again.
    if (pQueue) {
        pQueue->Wake();
    }
}

}  // namespace producer
