// Ports and events.

#include "tests/producer_double/Exports.h"

using namespace ProducerDouble;

namespace {

void ReadRegisters(CProducer& objProducer, PORT_HANDLE hPort, uint64_t nAddress, void* pBuffer, size_t nSize) {
    CModule& objModule = Opened<CModule>(objProducer, hPort);
    objModule.CheckPortAccess(false);
    if (pBuffer == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "a null pointer for a buffer");
    }
    objModule.Port().Read(nAddress, {static_cast<std::byte*>(pBuffer), nSize});
}

void WriteRegisters(CProducer& objProducer, PORT_HANDLE hPort, uint64_t nAddress, const void* pBuffer, size_t nSize) {
    CModule& objModule = Opened<CModule>(objProducer, hPort);
    objModule.CheckPortAccess(true);
    if (pBuffer == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "a null pointer for a buffer");
    }
    objModule.Port().Write(nAddress, {static_cast<const std::byte*>(pBuffer), nSize});
}

}  // namespace

extern "C" {

GC_ERROR GCReadPort(PORT_HANDLE hPort, uint64_t nAddress, void* pBuffer, size_t* pSize) {
    return CCall("GCReadPort")
        .Handle(hPort)
        .Address(nAddress)
        .Out(nullptr, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) { ReadRegisters(p, hPort, nAddress, pBuffer, Required(pSize)); });
}

GC_ERROR GCWritePort(PORT_HANDLE hPort, uint64_t nAddress, const void* pBuffer, size_t* pSize) {
    return CCall("GCWritePort")
        .Handle(hPort)
        .Address(nAddress)
        .In(pBuffer, pSize != nullptr ? *pSize : 0)
        .Do([&](CProducer& p, LOCK&) { WriteRegisters(p, hPort, nAddress, pBuffer, Required(pSize)); });
}

// Of the entries that nobody uses yet the double only records the calls.

GC_ERROR GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* /*pEntries*/, size_t* /*pCount*/) {
    return CCall("GCReadPortStacked").Handle(hPort).DoNothing();
}

GC_ERROR GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* /*pEntries*/, size_t* /*pCount*/) {
    return CCall("GCWritePortStacked").Handle(hPort).DoNothing();
}

GC_ERROR GCGetPortURL(PORT_HANDLE hPort, char* /*pszUrl*/, size_t* /*pSize*/) {
    return CCall("GCGetPortURL").Handle(hPort).DoNothing();
}

GC_ERROR GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* pCount) {
    return CCall("GCGetNumPortURLs").Handle(hPort).Count(pCount).Do([&](CProducer& p, LOCK&) {
        Required(pCount) = static_cast<uint32_t>(Opened<CModule>(p, hPort).Port().UrlCount());
    });
}

GC_ERROR GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t nIndex, URL_INFO_CMD nCommand, INFO_DATATYPE* pType,
                          void* pBuffer, size_t* pSize) {
    return CCall("GCGetPortURLInfo")
        .Handle(hPort)
        .Value(nIndex)
        .Number(nCommand)
        .Out(pType, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            Opened<CModule>(p, hPort).Port().GetUrlInfo(nIndex, nCommand, {pType, pBuffer, pSize});
        });
}

GC_ERROR GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall("GCGetPortInfo")
        .Handle(hPort)
        .Number(nCommand)
        .Out(pType, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            Opened<CModule>(p, hPort).Port().GetPortInfo(nCommand, {pType, pBuffer, pSize});
        });
}

GC_ERROR GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE nType, EVENT_HANDLE* phEvent) {
    return CCall("GCRegisterEvent").Handle(hEventSrc).Number(nType).Do([&](CProducer& p, LOCK&) {
        EVENT_HANDLE& hEvent = Required(phEvent);
        hEvent = Opened<CModule>(p, hEventSrc).RegisterEvent(nType);
    });
}

GC_ERROR GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE nType) {
    return CCall("GCUnregisterEvent").Handle(hEventSrc).Number(nType).Do([&](CProducer& p, LOCK&) {
        Opened<CModule>(p, hEventSrc).UnregisterEvent(nType);
    });
}

GC_ERROR EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* pSize, uint64_t nTimeoutMs) {
    return CCall("EventGetData")
        .Handle(hEvent)
        .Out(nullptr, pBuffer, pSize)
        .Value(nTimeoutMs)
        .Do([&](CProducer& p, LOCK& lock) {
            const auto pEvent = p.Context().objHandles.Find<CEvent>(hEvent);  // held over the wait
            pEvent->GetData(lock, pBuffer, pSize, nTimeoutMs);
        });
}

GC_ERROR EventGetDataInfo(EVENT_HANDLE hEvent, const void* pData, size_t nDataSize, EVENT_DATA_INFO_CMD nCommand,
                          INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall("EventGetDataInfo")
        .Handle(hEvent)
        .Value(nDataSize)
        .Number(nCommand)
        .Out(pType, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            const std::span data(static_cast<const std::byte*>(pData), pData != nullptr ? nDataSize : 0);
            Opened<CEvent>(p, hEvent).GetDataInfo(data, nCommand, {pType, pBuffer, pSize});
        });
}

GC_ERROR EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer,
                      size_t* pSize) {
    return CCall("EventGetInfo")
        .Handle(hEvent)
        .Number(nCommand)
        .Out(pType, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            Opened<CEvent>(p, hEvent).GetInfo(nCommand, {pType, pBuffer, pSize});
        });
}

GC_ERROR EventFlush(EVENT_HANDLE hEvent) {
    return CCall("EventFlush").Handle(hEvent).Do([&](CProducer& p, LOCK&) { Opened<CEvent>(p, hEvent).Flush(); });
}

GC_ERROR EventKill(EVENT_HANDLE hEvent) {
    return CCall("EventKill").Handle(hEvent).Do([&](CProducer& p, LOCK&) { Opened<CEvent>(p, hEvent).Kill(); });
}

}  // extern "C"
