// The entries of ports: every module has one, and so has the camera itself.

#include <span>

#include "producer/entries/Entry.h"
#include "producer/modules/Port.h"

using namespace producer;

namespace {

/// @tparam TByte  std::byte, or const std::byte for data that are only read
/// @throws CProducerError  GC_ERR_INVALID_PARAMETER for a null pointer to any bytes at all
template <class TByte, class TVoid>
std::span<TByte> RequireSpan(TVoid* pData, size_t nSize) {
    if (nSize != 0) {
        RequireOut(static_cast<TByte*>(pData), "the data");
    }
    return {static_cast<TByte*>(pData), nSize};
}

/// Runs the accesses in their order up to the first that fails, and tells how many succeeded.
template <class TAccess>
void RunStacked(PORT_REGISTER_STACK_ENTRY* pEntries, size_t* pCount, TAccess funAccess) {
    size_t& nCount = RequireOut(pCount, "the number of entries");
    const size_t nWanted = nCount;
    if (nWanted != 0) {
        RequireOut(pEntries, "the entries");
    }
    for (nCount = 0; nCount < nWanted; ++nCount) {
        // By value: the record is packed, and its members may stand where no reference may point to.
        const PORT_REGISTER_STACK_ENTRY objEntry = pEntries[nCount];
        funAccess(objEntry);
    }
}

}  // namespace

GC_ERROR GCReadPort(PORT_HANDLE hPort, uint64_t nAddress, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("GCReadPort", [&] {
        const auto pPort = Require<CPort>(hPort);
        pPort->Read(nAddress, RequireSpan<std::byte>(pBuffer, RequireOut(pSize, "the size")));
    });
}

GC_ERROR GCWritePort(PORT_HANDLE hPort, uint64_t nAddress, const void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("GCWritePort", [&] {
        const auto pPort = Require<CPort>(hPort);
        pPort->Write(nAddress, RequireSpan<const std::byte>(pBuffer, RequireOut(pSize, "the size")));
    });
}

GC_ERROR GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries, size_t* pCount) {
    return RunInitialisedEntry("GCReadPortStacked", [&] {
        const auto pPort = Require<CPort>(hPort);
        RunStacked(pEntries, pCount, [&](const PORT_REGISTER_STACK_ENTRY& objEntry) {
            pPort->Read(objEntry.Address, RequireSpan<std::byte>(objEntry.pBuffer, objEntry.Size));
        });
    });
}

GC_ERROR GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries, size_t* pCount) {
    return RunInitialisedEntry("GCWritePortStacked", [&] {
        const auto pPort = Require<CPort>(hPort);
        RunStacked(pEntries, pCount, [&](const PORT_REGISTER_STACK_ENTRY& objEntry) {
            pPort->Write(objEntry.Address, RequireSpan<const std::byte>(objEntry.pBuffer, objEntry.Size));
        });
    });
}

GC_ERROR GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("GCGetPortInfo",
                               [&] { Require<CPort>(hPort)->GetPortInfo(nCommand).Deliver(pType, pBuffer, pSize); });
}

GC_ERROR GCGetPortURL(PORT_HANDLE hPort, char* pszUrl, size_t* pSize) {
    return RunInitialisedEntry(
        "GCGetPortURL", [&] { Require<CPort>(hPort)->GetUrlInfo(0, URL_INFO_URL).Deliver(nullptr, pszUrl, pSize); });
}

GC_ERROR GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* pCount) {
    return RunInitialisedEntry("GCGetNumPortURLs", [&] {
        const auto pPort = Require<CPort>(hPort);
        RequireOut(pCount, "the number of URLs") = static_cast<uint32_t>(pPort->GetUrls().size());
    });
}

GC_ERROR GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t nIndex, URL_INFO_CMD nCommand, INFO_DATATYPE* pType,
                          void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("GCGetPortURLInfo", [&] {
        Require<CPort>(hPort)->GetUrlInfo(nIndex, nCommand).Deliver(pType, pBuffer, pSize);
    });
}
