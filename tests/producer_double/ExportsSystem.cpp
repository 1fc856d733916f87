// The library, the system module and the interface module.

#include "tests/producer_double/Exports.h"

using namespace ProducerDouble;

extern "C" {

GC_EXPORT IProducerControl* GetProducerControl() {
    return &CProducer::Instance();
}

GC_ERROR GCGetInfo(TL_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall(__func__).Number(nCommand).Out(pType, pBuffer, pSize).WorksClosed().Do([&](CProducer& p) {
        p.System().GetInfo(nCommand, {pType, pBuffer, pSize});
    });
}

GC_ERROR GCGetLastError(GC_ERROR* pCode, char* pszText, size_t* pSize) {
    return CCall(__func__).Out(nullptr, pszText, pSize).WorksClosed().Do([&](CProducer& p) {
        const auto [nCode, strText] = p.LastError();
        if (pCode != nullptr) {
            *pCode = nCode;
        }
        PutText({nullptr, pszText, pSize}, strText);
    });
}

GC_ERROR GCInitLib(void) {
    return CCall(__func__).WorksClosed().Do([](CProducer& p) { p.Initialise(); });
}

GC_ERROR GCCloseLib(void) {
    return CCall(__func__).Do([](CProducer& p) { p.Uninitialise(); });
}

GC_ERROR TLOpen(TL_HANDLE* phTL) {
    return CCall(__func__).Do([&](CProducer& p) {
        TL_HANDLE& hTL = Required(phTL);
        hTL = p.System().Open();
    });
}

GC_ERROR TLClose(TL_HANDLE hTL) {
    return CCall(__func__, hTL).On<CSystem>([](auto& m) { m.Close(); });
}

GC_ERROR TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return GetInfo<CSystem>(__func__, hTL, nCommand, {pType, pBuffer, pSize});
}

GC_ERROR TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* pCount) {
    return CCall(__func__, hTL).Count(pCount).On<CSystem>([&](auto& m) { PutCount(pCount, m.List().size()); });
}

GC_ERROR TLGetInterfaceID(TL_HANDLE hTL, uint32_t nIndex, char* pszId, size_t* pSize) {
    return CCall(__func__, hTL).Number(nIndex).Out(nullptr, pszId, pSize).On<CSystem>([&](auto& m) {
        PutText({nullptr, pszId, pSize}, m.Listed(nIndex).Name());
    });
}

GC_ERROR TLGetInterfaceInfo(TL_HANDLE hTL, const char* pszId, INTERFACE_INFO_CMD nCommand, INFO_DATATYPE* pType,
                            void* pBuffer, size_t* pSize) {
    return GetChildInfo<CSystem>(__func__, hTL, pszId, nCommand, {pType, pBuffer, pSize});
}

GC_ERROR TLOpenInterface(TL_HANDLE hTL, const char* pszId, IF_HANDLE* phInterface) {
    return CCall(__func__, hTL).Text(pszId).On<CSystem>([&](auto& m) {
        IF_HANDLE& hInterface = Required(phInterface);
        hInterface = m.Listed(Required(pszId)).Open();
    });
}

GC_ERROR TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pChanged, uint64_t nTimeoutMs) {
    return CCall(__func__, hTL).Value(nTimeoutMs).Count(pChanged).On<CSystem>([&](auto& m) {
        PutFlag(pChanged, m.UpdateList());
    });
}

GC_ERROR IFClose(IF_HANDLE hInterface) {
    return CCall(__func__, hInterface).On<CInterface>([](auto& m) { m.Close(); });
}

GC_ERROR IFGetInfo(IF_HANDLE hInterface, INTERFACE_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer,
                   size_t* pSize) {
    return GetInfo<CInterface>(__func__, hInterface, nCommand, {pType, pBuffer, pSize});
}

GC_ERROR IFGetNumDevices(IF_HANDLE hInterface, uint32_t* pCount) {
    return CCall(__func__, hInterface).Count(pCount).On<CInterface>([&](auto& m) {
        PutCount(pCount, m.List().size());
    });
}

GC_ERROR IFGetDeviceID(IF_HANDLE hInterface, uint32_t nIndex, char* pszId, size_t* pSize) {
    return CCall(__func__, hInterface).Number(nIndex).Out(nullptr, pszId, pSize).On<CInterface>([&](auto& m) {
        PutText({nullptr, pszId, pSize}, m.Listed(nIndex).Name());
    });
}

GC_ERROR IFUpdateDeviceList(IF_HANDLE hInterface, bool8_t* pChanged, uint64_t nTimeoutMs) {
    return CCall(__func__, hInterface).Value(nTimeoutMs).Count(pChanged).On<CInterface>([&](auto& m, LOCK& lock) {
        PutFlag(pChanged, m.UpdateList(lock, nTimeoutMs));
    });
}

GC_ERROR IFGetDeviceInfo(IF_HANDLE hInterface, const char* pszId, DEVICE_INFO_CMD nCommand, INFO_DATATYPE* pType,
                         void* pBuffer, size_t* pSize) {
    return GetChildInfo<CInterface>(__func__, hInterface, pszId, nCommand, {pType, pBuffer, pSize});
}

GC_ERROR IFOpenDevice(IF_HANDLE hInterface, const char* pszId, DEVICE_ACCESS_FLAGS nFlags, DEV_HANDLE* phDevice) {
    return CCall(__func__, hInterface).Text(pszId).Number(nFlags).On<CInterface>([&](auto& m) {
        DEV_HANDLE& hDevice = Required(phDevice);
        hDevice = m.ForOpening(Required(pszId)).OpenWith(nFlags);
    });
}

// Beyond the standard. What the double makes of their values: an address is taken over, the rest is recorded.

GC_ERROR IFIpConfiguration(IF_HANDLE hInterface, const char* pszId, uint32_t nValue, const char* pszText1,
                           const char* pszText2, const char* pszText3, const char* pszText4) {
    CCall objCall(__func__, hInterface);
    objCall.Text(pszId).Value(nValue).Text(pszText1).Text(pszText2).Text(pszText3).Text(pszText4);
    return objCall.On<CInterface>([&](auto& m) { m.ForOpening(Required(pszId)); });
}

GC_ERROR IFForceIp(IF_HANDLE hInterface, const char* pszId, const char* pszIp, const char* pszMask,
                   const char* pszGateway) {
    CCall objCall(__func__, hInterface);
    return objCall.Text(pszId).Text(pszIp).Text(pszMask).Text(pszGateway).On<CInterface>([&](auto& m) {
        CDevice& objDevice = m.ForOpening(Required(pszId));
        std::uint32_t nIp = 0, nMask = 0, nGateway = 0;
        if (!ParseIp(Required(pszIp), nIp) || !ParseIp(Required(pszMask), nMask) ||
            !ParseIp(Required(pszGateway), nGateway)) {
            Refuse(GC_ERR_INVALID_PARAMETER, "an address isn't dotted");
        }
        objDevice.MoveTo(nIp, nMask, nGateway);
    });
}

GC_ERROR IFResetDevice(IF_HANDLE hInterface, const char* pszId, uint32_t nValue) {
    return CCall(__func__, hInterface).Text(pszId).Value(nValue).On<CInterface>([&](auto& m) {
        m.ForOpening(Required(pszId));
    });
}

GC_ERROR IFUpdateSpecialDevice(IF_HANDLE hInterface, const char* pszKey, void* pBuffer, size_t* pSize) {
    return CCall(__func__, hInterface).Text(pszKey).Out(nullptr, pBuffer, pSize).On<CInterface>([&](auto& m) {
        PutBytes({nullptr, pBuffer, pSize}, INFO_DATATYPE_BUFFER, m.Answering(Required(pszKey)).DiscoveryReply());
    });
}

}  // extern "C"
