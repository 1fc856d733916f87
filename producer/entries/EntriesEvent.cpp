// The entries of events.

#include <span>

#include "producer/entries/Entry.h"
#include "producer/modules/EventData.h"
#include "producer/modules/EventQueue.h"
#include "producer/modules/Port.h"

using namespace producer;

GC_ERROR GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE nType, EVENT_HANDLE* phEvent) {
    return RunInitialisedEntry("GCRegisterEvent", [&] {
        const auto pPort = Require<CPort>(hEventSrc);
        RequireOut(phEvent, "the event handle");
        *phEvent = pPort->GetEvents().Register(nType);
    });
}

GC_ERROR GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE nType) {
    return RunInitialisedEntry("GCUnregisterEvent", [&] { Require<CPort>(hEventSrc)->GetEvents().Unregister(nType); });
}

GC_ERROR EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* pSize, uint64_t nTimeoutMs) {
    return RunInitialisedEntry("EventGetData",
                               [&] { Require<CEventQueue>(hEvent)->GetData(pBuffer, pSize, nTimeoutMs); });
}

GC_ERROR EventGetDataInfo(EVENT_HANDLE hEvent, const void* pData, size_t nDataSize, EVENT_DATA_INFO_CMD nCommand,
                          INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("EventGetDataInfo", [&] {
        const auto pEvent = Require<CEventQueue>(hEvent);
        const auto* pBytes = static_cast<const std::byte*>(pData);
        const std::span spanData(nDataSize != 0 ? &RequireOut(pBytes, "the event data") : nullptr, nDataSize);
        GetEventDataInfo(pEvent->GetType(), spanData, nCommand).Deliver(pType, pBuffer, pSize);
    });
}

GC_ERROR EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer,
                      size_t* pSize) {
    return RunInitialisedEntry("EventGetInfo",
                               [&] { Require<CEventQueue>(hEvent)->GetInfo(nCommand).Deliver(pType, pBuffer, pSize); });
}

GC_ERROR EventFlush(EVENT_HANDLE hEvent) {
    return RunInitialisedEntry("EventFlush", [&] { Require<CEventQueue>(hEvent)->Flush(); });
}

GC_ERROR EventKill(EVENT_HANDLE hEvent) {
    return RunInitialisedEntry("EventKill", [&] { Require<CEventQueue>(hEvent)->Kill(); });
}
