// The entries of system modules.

#include "producer/entries/Entry.h"
#include "producer/modules/SystemModule.h"

using namespace producer;

GC_ERROR TLOpen(TL_HANDLE* phTL) {
    return RunInitialisedEntry("TLOpen", [&] {
        RequireOut(phTL, "the system handle");
        *phTL = CLibrary::Get().OpenSystem();
    });
}

GC_ERROR TLClose(TL_HANDLE hTL) {
    return RunInitialisedEntry("TLClose", [&] { CloseModule<CSystemModule>(hTL); });
}

GC_ERROR TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("TLGetInfo", [&] {
        const auto pSystem = Require<CSystemModule>(hTL);
        GetProducerInfo(nCommand).Deliver(pType, pBuffer, pSize);
    });
}

GC_ERROR TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* pCount) {
    return RunInitialisedEntry("TLGetNumInterfaces", [&] {
        const auto pSystem = Require<CSystemModule>(hTL);
        RequireOut(pCount, "the number of interfaces") = pSystem->GetInterfaceCount();
    });
}

GC_ERROR TLGetInterfaceID(TL_HANDLE hTL, uint32_t nIndex, char* pszId, size_t* pSize) {
    return RunInitialisedEntry("TLGetInterfaceID",
                               [&] { DeliverText(Require<CSystemModule>(hTL)->GetInterfaceId(nIndex), pszId, pSize); });
}

GC_ERROR TLGetInterfaceInfo(TL_HANDLE hTL, const char* pszInterfaceId, INTERFACE_INFO_CMD nCommand,
                            INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("TLGetInterfaceInfo", [&] {
        const auto pSystem = Require<CSystemModule>(hTL);
        const std::string strId = RequireText(pszInterfaceId, "the interface's ID");
        pSystem->GetInterfaceInfo(strId, nCommand).Deliver(pType, pBuffer, pSize);
    });
}

GC_ERROR TLOpenInterface(TL_HANDLE hTL, const char* pszInterfaceId, IF_HANDLE* phInterface) {
    return RunInitialisedEntry("TLOpenInterface", [&] {
        const auto pSystem = Require<CSystemModule>(hTL);
        const std::string strId = RequireText(pszInterfaceId, "the interface's ID");
        RequireOut(phInterface, "the interface handle");
        *phInterface = pSystem->OpenInterface(strId);
    });
}

GC_ERROR TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pChanged, uint64_t) {
    // The kernel answers at once, so there is nothing to wait for.
    return RunInitialisedEntry("TLUpdateInterfaceList", [&] {
        const bool bChanged = Require<CSystemModule>(hTL)->UpdateInterfaces();
        if (pChanged != nullptr) {
            *pChanged = bChanged ? 1 : 0;
        }
    });
}
