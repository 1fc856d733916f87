#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "GenTL/GenTL.h"
#include "producer/modules/EventSource.h"
#include "producer/modules/StreamBuffer.h"
#include "producer/stream/Reassembly.h"

namespace producer {

/// How many buffers there are where, and what has gone through them since the stream was opened.
struct BUFFER_COUNTS {
    std::size_t Announced = 0;
    std::size_t Queued = 0;         ///< in the input pool, those being filled among them
    std::size_t AwaitDelivery = 0;  ///< in the output queue
    std::uint64_t Started = 0;      ///< images that a buffer was taken for
    std::uint64_t Delivered = 0;    ///< images put out
    std::uint64_t Underruns = 0;    ///< images that there was no buffer for
};

/// The announced buffers of one stream and their queues. The output queue is the queue of the event EVENT_NEW_BUFFER.
///
/// Owned by the stream's module. Consumers' threads and the receiver's thread call; whether a buffer's event has been
/// fetched is found out when it matters.
class CBufferPool : public IBlockSink {
public:
    /// Buffers that may be announced; the queue of the events holds as many.
    static constexpr std::size_t kMostBuffers = 1024;

    /// @param objEvents  of the stream's module; must outlive this object
    explicit CBufferPool(CEventSource& objEvents) : m_objEvents(objEvents) {}
    ~CBufferPool() override { RevokeAll(); }

    /// @return the buffer's handle
    /// @throws CProducerError  GC_ERR_RESOURCE_IN_USE for memory that is announced already, GC_ERR_RESOURCE_EXHAUSTED
    void* Announce(std::shared_ptr<CStreamBuffer> pBuffer);
    /// @return the buffer, which has no handle any more
    /// @throws CProducerError  GC_ERR_BUSY while it is in a queue or being filled; as Require
    std::shared_ptr<CStreamBuffer> Revoke(void* hBuffer);
    /// The receiver has ended before.
    void RevokeAll() noexcept;
    /// @throws CProducerError  GC_ERR_RESOURCE_IN_USE when it is in a queue already; as Require
    void Queue(void* hBuffer);
    /// An operation on all buffers holds also for those that are being filled, as soon as they aren't any more: the
    /// image under way counts as delivered, and is given up.
    void Flush(ACQ_QUEUE_TYPE nOperation);

    /// @throws CProducerError  GC_ERR_INVALID_HANDLE, also for a buffer of another stream
    [[nodiscard]] CInfoValue GetInfo(void* hBuffer, BUFFER_INFO_CMD nCommand);
    /// @throws CProducerError  GC_ERR_BUSY while it is being filled, GC_ERR_PARSING_CHUNK_DATA; as GetInfo
    [[nodiscard]] std::vector<SINGLE_CHUNK_DATA> GetChunks(void* hBuffer);
    /// In the order of their announcement.
    /// @throws CProducerError  GC_ERR_INVALID_INDEX
    [[nodiscard]] void* GetHandle(std::uint32_t nIndex);
    [[nodiscard]] BUFFER_COUNTS GetCounts();

    /// Before an acquisition.
    /// @param nFrames         images to be delivered in all
    /// @param nTickFrequency  of the camera, Hz; 0 when it isn't known
    void Start(std::uint64_t nFrames, std::uint64_t nTickFrequency);
    /// Whether all images of the acquisition were delivered.
    [[nodiscard]] bool IsThrough();

    // IBlockSink, for the receiver's thread. Wishes for resends are none of its business.
    BLOCK_MEMORY TakeMemory() override;
    void ReturnMemory(const BLOCK_MEMORY& objMemory) override;
    void DeliverBlock(const FINISHED_BLOCK& objBlock) override;
    void RequestResend(std::uint64_t, std::uint32_t, std::uint32_t, bool) override {}

private:
    CStreamBuffer& Require(void* hBuffer);
    void FollowOutput();
    [[nodiscard]] std::shared_ptr<CEventQueue> PutOut(CStreamBuffer& objBuffer);
    void PutIn(CStreamBuffer& objBuffer);
    void Redirect(BUFFER_PLACE eNext);
    void DiscardOutput();

    CEventSource& m_objEvents;
    std::mutex m_mtxPool;  // guards all below, and the buffers; taken before the locks of the events and the handles
    std::vector<std::shared_ptr<CStreamBuffer>> m_vecBuffer;  // announced, in their order
    // With room for all that are announced, so that the receiver's thread never needs any.
    std::vector<CStreamBuffer*> m_vecInput;
    std::vector<CStreamBuffer*> m_vecOutput;  // as FollowOutput left it: the oldest may have been fetched
    std::uint64_t m_nFramesLeft = 0;          // that may still be begun
    std::uint64_t m_nUndelivered = 0;         // of the acquisition
    std::uint64_t m_nTickFrequency = 0;
    BUFFER_COUNTS m_objCounts;  // the last three of it
};

}  // namespace producer
