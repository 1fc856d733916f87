#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/producer_double/Module.h"

namespace ProducerDouble {

/// One announced buffer in the consumer's memory.
struct BUFFER {
    enum class PLACE { Unqueued, Input, Output };

    void* hSelf = nullptr;
    std::byte* pBase = nullptr;
    std::size_t nSize = 0;
    void* pUserPointer = nullptr;
    PLACE nPlace = PLACE::Unqueued;
    std::size_t nFilled = 0;
    FRAME_LAYOUT objLayout;
};

/// A data stream: announced buffers, the input and the output queue, frames that wait for a buffer.
///
/// Owned by its device. A frame goes into the first input buffer and behind the output queue, out of which the
/// new-buffer event takes.
class CStream : public CModule, public IStreamControl, public IEventQueue {
public:
    CStream(CONTEXT& objContext, const std::string& strDevice, std::string strId);

    const std::string& Id() const { return m_strId; }

    bool PushFrame(FRAME objFrame) override;
    void FlowFrames(FRAME objFrame) override;
    void StopFlow() override;
    std::size_t Announced() const override;
    std::size_t Queued() const override;

    // Everything below expects the monitor's lock.
    void* Announce(std::byte* pBuffer, std::size_t nSize, void* pUserPointer);
    void Revoke(void* hBuffer, void** ppBuffer, void** ppUserPointer);
    void Queue(void* hBuffer);
    void FlushQueue(ACQ_QUEUE_TYPE nOperation);
    void Start(std::uint64_t nFrames);
    void Stop();
    void GetBufferInfo(void* hBuffer, BUFFER_INFO_CMD nCommand, const TARGET& objTarget) const;
    void GetChunks(void* hBuffer, SINGLE_CHUNK_DATA* pChunks, std::size_t* pCount) const;

    std::size_t Waiting() override;
    std::size_t NextSize() const override { return sizeof(EVENT_NEW_BUFFER_DATA); }
    void Take(std::byte* pBuffer) override;
    void Clear() override;
    std::size_t MaxSize() const override { return sizeof(EVENT_NEW_BUFFER_DATA); }
    std::size_t MaxValueSize() const override { return sizeof(void*); }

private:
    void _CloseChildren() override;
    bool _GetOwnInfo(std::int32_t nCommand, const TARGET& objTarget) override;
    IEventQueue* _QueueOf(EVENT_TYPE nType) override;

    BUFFER& __Find(void* hBuffer) const;
    void __Unqueue(BUFFER::PLACE nPlace);
    void __QueueAll();
    void __Deliver();
    void __Fill(BUFFER& objBuffer, const FRAME& objFrame);

    const std::string m_strId;
    std::vector<std::unique_ptr<BUFFER>> m_vecBuffer;  // in the order of announcing
    std::vector<BUFFER*> m_vecInput;
    std::vector<BUFFER*> m_vecOutput;
    std::deque<FRAME> m_queFrame;
    std::optional<FRAME> m_objFlow;
    bool m_bStarted = false;
    std::uint64_t m_nFramesLeft = 0;
    std::uint64_t m_nDelivered = 0;
};

}  // namespace ProducerDouble
