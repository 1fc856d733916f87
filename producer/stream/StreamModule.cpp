#include "producer/stream/StreamModule.h"

#include <utility>

#include "producer/ProducerError.h"

namespace producer {

namespace {

constexpr std::size_t kNewBufferEventsKept = 1024;

}  // namespace

CStreamModule::CStreamModule(std::shared_ptr<CRemotePort> pRemotePort, std::string strId,
                             std::function<void()> funClosed)
    : CModule("TLDataStream", std::move(strId),
              {"NorvikStream", "The data stream of one camera", "StreamPort", "6B1E3A52-0C3D-4E61-9A57-2F4D0B8C7E14"}),
      m_pRemotePort(std::move(pRemotePort)),
      m_funClosed(std::move(funClosed)) {
    GetEvents().Offer(EVENT_NEW_BUFFER, sizeof(EVENT_NEW_BUFFER_DATA), kNewBufferEventsKept);
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("StreamInformation");
    objMap.Text("StreamID", "Identifies the data stream", [this] { return GetModuleId(); }).Constant();
    objMap.Enumeration("StreamType", "The transport layer of the data stream", {{"GigEVision", 1}}, [] { return 1; })
        .Constant();
    objMap.Finish();
}

CInfoValue CStreamModule::GetInfo(STREAM_INFO_CMD nCommand) const {
    switch (nCommand) {
        case STREAM_INFO_ID:
            return CInfoValue::Text(GetModuleId());
        case STREAM_INFO_TLTYPE:
            return CInfoValue::Text("GEV");
        case STREAM_INFO_NUM_DELIVERED:
        case STREAM_INFO_NUM_UNDERRUN:
        case STREAM_INFO_NUM_STARTED:
            return CInfoValue::Uint64(0);
        case STREAM_INFO_NUM_ANNOUNCED:
        case STREAM_INFO_NUM_QUEUED:
        case STREAM_INFO_NUM_AWAIT_DELIVERY:
            return CInfoValue::Size(0);
        case STREAM_INFO_IS_GRABBING:
        case STREAM_INFO_DEFINES_PAYLOADSIZE:
            return CInfoValue::Bool(false);
        default:
            throw CProducerError(GC_ERR_NOT_AVAILABLE,
                                 "nothing is known of a data stream for the info command " + std::to_string(nCommand));
    }
}

void CStreamModule::DoClose() noexcept {
    m_funClosed();
}

}  // namespace producer
