// Ports and events.

#include "tests/producer_double/Exports.h"

using namespace ProducerDouble;

extern "C" {

GC_ERROR GCReadPort(PORT_HANDLE hPort, uint64_t nAddress, void* pBuffer, size_t* pSize) {
    return CCall(__func__, hPort).Address(nAddress).Out(nullptr, pBuffer, pSize).On<CModule>([&](auto& m) {
        m.CheckPortAccess(false);
        m.Port().Read(nAddress, {&Required(static_cast<std::byte*>(pBuffer)), Required(pSize)});
    });
}

GC_ERROR GCWritePort(PORT_HANDLE hPort, uint64_t nAddress, const void* pBuffer, size_t* pSize) {
    const size_t nSize = pSize != nullptr ? *pSize : 0;
    return CCall(__func__, hPort).Address(nAddress).In(pBuffer, nSize).On<CModule>([&](auto& m) {
        m.CheckPortAccess(true);
        m.Port().Write(nAddress, {&Required(static_cast<const std::byte*>(pBuffer)), Required(pSize)});
    });
}

// Of the entries that nobody uses yet the double only records the calls.

GC_ERROR GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* /*pEntries*/, size_t* /*pCount*/) {
    return CCall(__func__, hPort).DoNothing();
}

GC_ERROR GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* /*pEntries*/, size_t* /*pCount*/) {
    return CCall(__func__, hPort).DoNothing();
}

GC_ERROR GCGetPortURL(PORT_HANDLE hPort, char* /*pszUrl*/, size_t* /*pSize*/) {
    return CCall(__func__, hPort).DoNothing();
}

GC_ERROR GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* pCount) {
    return CCall(__func__, hPort).Count(pCount).On<CModule>([&](auto& m) { PutCount(pCount, m.Port().UrlCount()); });
}

GC_ERROR GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t nIndex, URL_INFO_CMD nCommand, INFO_DATATYPE* pType,
                          void* pBuffer, size_t* pSize) {
    const TARGET objTarget{pType, pBuffer, pSize};
    return CCall(__func__, hPort).Value(nIndex).Number(nCommand).Out(objTarget).On<CModule>([&](auto& m) {
        m.Port().GetUrlInfo(nIndex, nCommand, objTarget);
    });
}

GC_ERROR GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall(__func__, hPort).Number(nCommand).Out(pType, pBuffer, pSize).On<CModule>([&](auto& m) {
        m.Port().GetPortInfo(nCommand, {pType, pBuffer, pSize});
    });
}

GC_ERROR GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE nType, EVENT_HANDLE* phEvent) {
    return CCall(__func__, hEventSrc).Number(nType).On<CModule>([&](auto& m) {
        EVENT_HANDLE& hEvent = Required(phEvent);
        hEvent = m.RegisterEvent(nType);
    });
}

GC_ERROR GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE nType) {
    return CCall(__func__, hEventSrc).Number(nType).On<CModule>([&](auto& m) { m.UnregisterEvent(nType); });
}

GC_ERROR EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* pSize, uint64_t nTimeoutMs) {
    return CCall(__func__, hEvent).Out(nullptr, pBuffer, pSize).Value(nTimeoutMs).On<CEvent>([&](auto& m, LOCK& lock) {
        m.GetData(lock, pBuffer, pSize, nTimeoutMs);
    });
}

GC_ERROR EventGetDataInfo(EVENT_HANDLE hEvent, const void* pData, size_t nDataSize, EVENT_DATA_INFO_CMD nCommand,
                          INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    const TARGET objTarget{pType, pBuffer, pSize};
    return CCall(__func__, hEvent).Value(nDataSize).Number(nCommand).Out(objTarget).On<CEvent>([&](auto& m) {
        const std::span data(static_cast<const std::byte*>(pData), pData != nullptr ? nDataSize : 0);
        m.GetDataInfo(data, nCommand, objTarget);
    });
}

GC_ERROR EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer,
                      size_t* pSize) {
    return GetInfo<CEvent>(__func__, hEvent, nCommand, {pType, pBuffer, pSize});
}

GC_ERROR EventFlush(EVENT_HANDLE hEvent) {
    return CCall(__func__, hEvent).On<CEvent>([](auto& m) { m.Flush(); });
}

GC_ERROR EventKill(EVENT_HANDLE hEvent) {
    return CCall(__func__, hEvent).On<CEvent>([](auto& m) { m.Kill(); });
}

}  // extern "C"
