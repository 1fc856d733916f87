#include "producer/modules/EventData.h"

#include <cstring>
#include <string>

#include "producer/ProducerError.h"
#include "producer/modules/HexText.h"

namespace producer {

namespace {

[[noreturn]] void ThrowNotCarried(EVENT_DATA_INFO_CMD nCommand) {
    throw CProducerError(GC_ERR_NOT_AVAILABLE,
                         "the event carries nothing for the info command " + std::to_string(nCommand));
}

template <class T>
T RequireRecord(std::span<const std::byte> spanData) {
    T objRecord;
    if (spanData.size() < sizeof(T)) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER,
                             std::to_string(spanData.size()) +
                                 " bytes are no event data of this kind, which has at least " +
                                 std::to_string(sizeof(T)));
    }
    std::memcpy(&objRecord, spanData.data(), sizeof(T));
    return objRecord;
}

CInfoValue GetNewBufferInfo(std::span<const std::byte> spanData, EVENT_DATA_INFO_CMD nCommand) {
    const auto objData = RequireRecord<EVENT_NEW_BUFFER_DATA>(spanData);
    switch (nCommand) {
        case EVENT_DATA_ID:
            return CInfoValue::Pointer(objData.BufferHandle);
        case EVENT_DATA_VALUE:
            return CInfoValue::Pointer(objData.pUserPointer);
        default:
            ThrowNotCarried(nCommand);
    }
}

CInfoValue GetRemoteEventInfo(std::span<const std::byte> spanData, EVENT_DATA_INFO_CMD nCommand) {
    const auto objHeader = RequireRecord<REMOTE_EVENT_HEADER>(spanData);
    switch (nCommand) {
        case EVENT_DATA_ID:
            return CInfoValue::Text(HexText(objHeader.EventId));
        case EVENT_DATA_VALUE:
            return CInfoValue::Bytes(spanData.subspan(sizeof(objHeader)));
        case EVENT_DATA_NUMID:
            return CInfoValue::Uint64(objHeader.EventId);
        default:
            ThrowNotCarried(nCommand);
    }
}

}  // namespace

std::size_t EventValueSizeMax(EVENT_TYPE nType) {
    switch (nType) {
        case EVENT_NEW_BUFFER:
            return sizeof(void*);
        case EVENT_REMOTE_DEVICE:
            return kRemoteEventValueMax;
        default:
            return 0;
    }
}

CInfoValue GetEventDataInfo(EVENT_TYPE nType, std::span<const std::byte> spanData, EVENT_DATA_INFO_CMD nCommand) {
    switch (nType) {
        case EVENT_NEW_BUFFER:
            return GetNewBufferInfo(spanData, nCommand);
        case EVENT_REMOTE_DEVICE:
            return GetRemoteEventInfo(spanData, nCommand);
        default:
            ThrowNotCarried(nCommand);
    }
}

}  // namespace producer
