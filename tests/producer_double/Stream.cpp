#include "tests/producer_double/Stream.h"

#include <algorithm>
#include <cstring>

namespace ProducerDouble {

CStream::CStream(CONTEXT& objContext, const std::string& strDevice, std::string strId)
    : CModule(objContext, strDevice + ":" + strId, "TLDataStream", "StreamPort"), m_strId(std::move(strId)) {
    Port().AddText("StreamID", m_strId).AddInteger("TLParamsLocked", 0, {0, 1});
    Port().AddInteger("StreamAnnouncedBufferCount", 0);
    _DefaultInfo(STREAM_INFO_ID, ANSWER::Text(m_strId));
    _DefaultInfo(STREAM_INFO_TLTYPE, ANSWER::Text("GEV"));
    _DefaultInfo(STREAM_INFO_PAYLOAD_SIZE, ANSWER::Size(0));
    _DefaultInfo(STREAM_INFO_NUM_CHUNKS_MAX, ANSWER::Size(16));
    _DefaultInfo(STREAM_INFO_BUF_ANNOUNCE_MIN, ANSWER::Size(1));
    _DefaultInfo(STREAM_INFO_BUF_ALIGNMENT, ANSWER::Size(1));
    _DefaultInfo(STREAM_INFO_ZR_BUF_ANNOUNCE_MAX, ANSWER::Size(1024));
    _DefaultInfo(STREAM_INFO_ZR_OPTIMAL_PACKET_SIZE, ANSWER::Value(INFO_DATATYPE_UINT32, std::uint32_t{1500}));
}

// What a test does.

bool CStream::PushFrame(FRAME objFrame) {
    const LOCK lock = _Enter();
    if (!m_bStarted) {
        return false;
    }
    m_queFrame.push_back(std::move(objFrame));
    __Deliver();
    _Changed();
    return true;
}

void CStream::FlowFrames(FRAME objFrame) {
    const LOCK lock = _Enter();
    m_objFlow = std::move(objFrame);
    _Changed();
}

void CStream::StopFlow() {
    const LOCK lock = _Enter();
    m_objFlow.reset();
}

std::size_t CStream::Announced() const {
    const LOCK lock = _Enter();
    return m_vecBuffer.size();
}

std::size_t CStream::Queued() const {
    const LOCK lock = _Enter();
    return m_vecInput.size();
}

// Buffers.

void* CStream::Announce(std::byte* pBuffer, std::size_t nSize, void* pUserPointer) {
    if (nSize == 0) {
        Refuse(GC_ERR_INVALID_PARAMETER, "a buffer has at least one byte");
    }
    auto pNew = std::make_unique<BUFFER>();
    pNew->pBase = pBuffer;
    pNew->nSize = nSize;
    pNew->pUserPointer = pUserPointer;
    pNew->hSelf = _Context().objHandles.Next();
    m_vecBuffer.push_back(std::move(pNew));
    m_vecInput.reserve(m_vecBuffer.size());  // so that queueing allocates nothing
    m_vecOutput.reserve(m_vecBuffer.size());
    return m_vecBuffer.back()->hSelf;
}

void CStream::Revoke(void* hBuffer, void** ppBuffer, void** ppUserPointer) {
    BUFFER& objBuffer = __Find(hBuffer);
    if (objBuffer.nPlace != BUFFER::PLACE::Unqueued) {
        Refuse(GC_ERR_BUSY, "the buffer is in a queue");
    }
    if (ppBuffer != nullptr) {
        *ppBuffer = objBuffer.pBase;
    }
    if (ppUserPointer != nullptr) {
        *ppUserPointer = objBuffer.pUserPointer;
    }
    std::erase_if(m_vecBuffer, [&](const auto& pBuffer) { return pBuffer.get() == &objBuffer; });
}

void CStream::Queue(void* hBuffer) {
    BUFFER& objBuffer = __Find(hBuffer);
    if (objBuffer.nPlace != BUFFER::PLACE::Unqueued) {
        Refuse(GC_ERR_RESOURCE_IN_USE, "the buffer is in a queue already");
    }
    objBuffer.nPlace = BUFFER::PLACE::Input;
    m_vecInput.push_back(&objBuffer);
    __Deliver();
    _Changed();
}

BUFFER& CStream::__Find(void* hBuffer) const {
    for (const auto& pBuffer : m_vecBuffer) {
        if (pBuffer->hSelf == hBuffer) {
            return *pBuffer;
        }
    }
    Refuse(GC_ERR_INVALID_HANDLE, Name() + " has no buffer of this handle");
}

void CStream::FlushQueue(ACQ_QUEUE_TYPE nOperation) {
    if (nOperation != ACQ_QUEUE_ALL_TO_INPUT && nOperation != ACQ_QUEUE_ALL_DISCARD) {
        Refuse(GC_ERR_NOT_IMPLEMENTED, "the double doesn't do this");
    }
    __Unqueue(BUFFER::PLACE::Input);
    __Unqueue(BUFFER::PLACE::Output);
    if (nOperation == ACQ_QUEUE_ALL_TO_INPUT) {
        __QueueAll();
    }
    __Deliver();
    _Changed();
}

void CStream::__Unqueue(BUFFER::PLACE nPlace) {
    for (const auto& pBuffer : m_vecBuffer) {
        if (pBuffer->nPlace == nPlace) {
            pBuffer->nPlace = BUFFER::PLACE::Unqueued;
        }
    }
    (nPlace == BUFFER::PLACE::Input ? m_vecInput : m_vecOutput).clear();
}

void CStream::__QueueAll() {
    for (const auto& pBuffer : m_vecBuffer) {
        pBuffer->nPlace = BUFFER::PLACE::Input;
        m_vecInput.push_back(pBuffer.get());
    }
}

// Acquisition.

void CStream::Start(std::uint64_t nFrames) {
    if (m_bStarted) {
        Refuse(GC_ERR_RESOURCE_IN_USE, "the acquisition runs already");
    }
    m_bStarted = true;
    m_nFramesLeft = nFrames;
    _Changed();
}

void CStream::Stop() {
    if (!m_bStarted) {
        Refuse(GC_ERR_RESOURCE_IN_USE, "no acquisition runs");
    }
    m_bStarted = false;
    m_queFrame.clear();
}

void CStream::__Deliver() {
    while (m_bStarted && m_nFramesLeft > 0 && !m_queFrame.empty() && !m_vecInput.empty()) {
        __Fill(*m_vecInput.front(), m_queFrame.front());
        m_queFrame.pop_front();
    }
}

void CStream::__Fill(BUFFER& objBuffer, const FRAME& objFrame) {
    m_vecInput.erase(m_vecInput.begin());
    objBuffer.nFilled = std::min(objBuffer.nSize, objFrame.vecData.size());
    std::copy_n(objFrame.vecData.begin(), objBuffer.nFilled, objBuffer.pBase);
    objBuffer.objLayout = static_cast<const FRAME_LAYOUT&>(objFrame);
    if (objFrame.vecData.size() > objBuffer.nSize) {
        objBuffer.objLayout.bIncomplete = true;
    }
    objBuffer.nPlace = BUFFER::PLACE::Output;
    m_vecOutput.push_back(&objBuffer);
    if (m_nFramesLeft != GENTL_INFINITE && --m_nFramesLeft == 0) {
        m_bStarted = false;
    }
}

std::size_t CStream::Waiting() {
    if (m_objFlow && m_vecOutput.empty() && m_bStarted && !m_vecInput.empty()) {
        __Fill(*m_vecInput.front(), *m_objFlow);
        ++m_objFlow->nFrameId;
    }
    return m_vecOutput.size();
}

void CStream::Take(std::byte* pBuffer) {
    BUFFER& objBuffer = *m_vecOutput.front();
    m_vecOutput.erase(m_vecOutput.begin());
    objBuffer.nPlace = BUFFER::PLACE::Unqueued;
    ++m_nDelivered;
    const EVENT_NEW_BUFFER_DATA objData{objBuffer.hSelf, objBuffer.pUserPointer};
    std::memcpy(pBuffer, &objData, sizeof(objData));
}

void CStream::Clear() {
    __Unqueue(BUFFER::PLACE::Output);
}

void CStream::_CloseChildren() {
    m_bStarted = false;
    m_queFrame.clear();
    m_vecInput.clear();
    m_vecOutput.clear();
    m_vecBuffer.clear();
}

IEventQueue* CStream::_QueueOf(EVENT_TYPE nType) {
    return nType == EVENT_NEW_BUFFER ? this : nullptr;
}

// What the stream and its buffers say of themselves.

bool CStream::_GetOwnInfo(std::int32_t nCommand, const TARGET& objTarget) {
    if (nCommand != STREAM_INFO_NUM_DELIVERED) {
        return false;
    }
    PutValue(objTarget, INFO_DATATYPE_UINT64, m_nDelivered);
    return true;
}

void CStream::GetBufferInfo(void* hBuffer, BUFFER_INFO_CMD nCommand, const TARGET& objTarget) const {
    const BUFFER& objBuffer = __Find(hBuffer);
    const FRAME_LAYOUT& objLayout = objBuffer.objLayout;
    const auto PutSize = [&](std::size_t nValue) { PutValue(objTarget, INFO_DATATYPE_SIZET, nValue); };
    const auto PutUint64 = [&](std::uint64_t nValue) { PutValue(objTarget, INFO_DATATYPE_UINT64, nValue); };
    switch (nCommand) {
        case BUFFER_INFO_BASE:
            return PutValue(objTarget, INFO_DATATYPE_PTR, objBuffer.pBase);
        case BUFFER_INFO_SIZE:
            return PutSize(objBuffer.nSize);
        case BUFFER_INFO_USER_PTR:
            return PutValue(objTarget, INFO_DATATYPE_PTR, objBuffer.pUserPointer);
        case BUFFER_INFO_IS_INCOMPLETE:
            return PutBool(objTarget, objLayout.bIncomplete);
        case BUFFER_INFO_SIZE_FILLED:
            return PutSize(objBuffer.nFilled);
        case BUFFER_INFO_WIDTH:
            return PutSize(objLayout.nWidth);
        case BUFFER_INFO_HEIGHT:
            return PutSize(objLayout.nHeight);
        case BUFFER_INFO_XOFFSET:
        case BUFFER_INFO_YOFFSET:
        case BUFFER_INFO_XPADDING:
        case BUFFER_INFO_YPADDING:
        case BUFFER_INFO_IMAGEOFFSET:
            return PutSize(0);
        case BUFFER_INFO_PAYLOADTYPE:
            return PutSize(PAYLOAD_TYPE_IMAGE);
        case BUFFER_INFO_TIMESTAMP:
            return PutUint64(0);
        case BUFFER_INFO_FRAMEID:
            return PutUint64(objLayout.nFrameId);
        case BUFFER_INFO_PIXELFORMAT:
            return PutUint64(0x01080001);  // Mono8
        case BUFFER_INFO_PIXELFORMAT_NAMESPACE:
            return PutUint64(PIXELFORMAT_NAMESPACE_PFNC_32BIT);
        default:
            Refuse(GC_ERR_NOT_AVAILABLE, "the buffer doesn't tell this");
    }
}

void CStream::GetChunks(void* hBuffer, SINGLE_CHUNK_DATA* pChunks, std::size_t* pCount) const {
    const BUFFER& objBuffer = __Find(hBuffer);
    const auto& vecChunk = objBuffer.objLayout.vecChunk;
    if (pCount == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "no place for the number of chunks");
    }
    if (pChunks != nullptr) {
        if (*pCount < vecChunk.size()) {
            Refuse(GC_ERR_BUFFER_TOO_SMALL, "there are more chunks than places");
        }
        std::copy(vecChunk.begin(), vecChunk.end(), pChunks);
    }
    *pCount = vecChunk.size();
}

}  // namespace ProducerDouble
