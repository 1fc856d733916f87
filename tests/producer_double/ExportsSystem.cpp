// The library, the system module and the interface module.

#include "tests/producer_double/Exports.h"

using namespace ProducerDouble;

extern "C" {

GC_EXPORT IProducerControl* GetProducerControl() {
    return &CProducer::Instance();
}

GC_ERROR GCGetInfo(TL_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall("GCGetInfo").Number(nCommand).Out(pType, pBuffer, pSize).WorksClosed().Do([&](CProducer& p, LOCK&) {
        p.System().GetInfo(nCommand, {pType, pBuffer, pSize});
    });
}

GC_ERROR GCGetLastError(GC_ERROR* pCode, char* pszText, size_t* pSize) {
    return CCall("GCGetLastError").Out(nullptr, pszText, pSize).WorksClosed().Do([&](CProducer& p, LOCK&) {
        const auto [nCode, strText] = p.LastError();
        if (pCode != nullptr) {
            *pCode = nCode;
        }
        PutText({nullptr, pszText, pSize}, strText);
    });
}

GC_ERROR GCInitLib(void) {
    return CCall("GCInitLib").WorksClosed().Do([](CProducer& p, LOCK&) { p.Initialise(); });
}

GC_ERROR GCCloseLib(void) {
    return CCall("GCCloseLib").Do([](CProducer& p, LOCK&) { p.Uninitialise(); });
}

GC_ERROR TLOpen(TL_HANDLE* phTL) {
    return CCall("TLOpen").Do([&](CProducer& p, LOCK&) {
        TL_HANDLE& hTL = Required(phTL);
        hTL = p.System().Open();
    });
}

GC_ERROR TLClose(TL_HANDLE hTL) {
    return CCall("TLClose").Handle(hTL).Do([&](CProducer& p, LOCK&) { Opened<CSystem>(p, hTL).Close(); });
}

GC_ERROR TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall("TLGetInfo").Handle(hTL).Number(nCommand).Out(pType, pBuffer, pSize).Do([&](CProducer& p, LOCK&) {
        Opened<CSystem>(p, hTL).GetInfo(nCommand, {pType, pBuffer, pSize});
    });
}

GC_ERROR TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* pCount) {
    return CCall("TLGetNumInterfaces").Handle(hTL).Count(pCount).Do([&](CProducer& p, LOCK&) {
        Required(pCount) = static_cast<uint32_t>(Opened<CSystem>(p, hTL).List().size());
    });
}

GC_ERROR TLGetInterfaceID(TL_HANDLE hTL, uint32_t nIndex, char* pszId, size_t* pSize) {
    return CCall("TLGetInterfaceID").Handle(hTL).Number(nIndex).Out(nullptr, pszId, pSize).Do([&](CProducer& p, LOCK&) {
        PutText({nullptr, pszId, pSize}, Opened<CSystem>(p, hTL).Listed(nIndex).Name());
    });
}

GC_ERROR TLGetInterfaceInfo(TL_HANDLE hTL, const char* pszInterfaceId, INTERFACE_INFO_CMD nCommand,
                            INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall("TLGetInterfaceInfo")
        .Handle(hTL)
        .Text(pszInterfaceId)
        .Number(nCommand)
        .Out(pType, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            Opened<CSystem>(p, hTL).Listed(Required(pszInterfaceId)).GetInfo(nCommand, {pType, pBuffer, pSize});
        });
}

GC_ERROR TLOpenInterface(TL_HANDLE hTL, const char* pszInterfaceId, IF_HANDLE* phInterface) {
    return CCall("TLOpenInterface").Handle(hTL).Text(pszInterfaceId).Do([&](CProducer& p, LOCK&) {
        IF_HANDLE& hInterface = Required(phInterface);
        hInterface = Opened<CSystem>(p, hTL).Listed(Required(pszInterfaceId)).Open();
    });
}

GC_ERROR TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pChanged, uint64_t nTimeoutMs) {
    return CCall("TLUpdateInterfaceList").Handle(hTL).Value(nTimeoutMs).Count(pChanged).Do([&](CProducer& p, LOCK&) {
        const bool bChanged = Opened<CSystem>(p, hTL).UpdateList();
        if (pChanged != nullptr) {
            *pChanged = bChanged ? 1 : 0;
        }
    });
}

GC_ERROR IFClose(IF_HANDLE hInterface) {
    return CCall("IFClose").Handle(hInterface).Do([&](CProducer& p, LOCK&) {
        Opened<CInterface>(p, hInterface).Close();
    });
}

GC_ERROR IFGetInfo(IF_HANDLE hInterface, INTERFACE_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer,
                   size_t* pSize) {
    return CCall("IFGetInfo")
        .Handle(hInterface)
        .Number(nCommand)
        .Out(pType, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            Opened<CInterface>(p, hInterface).GetInfo(nCommand, {pType, pBuffer, pSize});
        });
}

GC_ERROR IFGetNumDevices(IF_HANDLE hInterface, uint32_t* pCount) {
    return CCall("IFGetNumDevices").Handle(hInterface).Count(pCount).Do([&](CProducer& p, LOCK&) {
        Required(pCount) = static_cast<uint32_t>(Opened<CInterface>(p, hInterface).List().size());
    });
}

GC_ERROR IFGetDeviceID(IF_HANDLE hInterface, uint32_t nIndex, char* pszId, size_t* pSize) {
    return CCall("IFGetDeviceID")
        .Handle(hInterface)
        .Number(nIndex)
        .Out(nullptr, pszId, pSize)
        .Do([&](CProducer& p, LOCK&) {
            PutText({nullptr, pszId, pSize}, Opened<CInterface>(p, hInterface).Listed(nIndex).Name());
        });
}

GC_ERROR IFUpdateDeviceList(IF_HANDLE hInterface, bool8_t* pChanged, uint64_t nTimeoutMs) {
    return CCall("IFUpdateDeviceList")
        .Handle(hInterface)
        .Value(nTimeoutMs)
        .Count(pChanged)
        .Do([&](CProducer& p, LOCK& lock) {
            const auto pInterface = p.Context().objHandles.Find<CInterface>(hInterface);  // held over the wait
            const bool bChanged = pInterface->UpdateList(lock, nTimeoutMs);
            if (pChanged != nullptr) {
                *pChanged = bChanged ? 1 : 0;
            }
        });
}

GC_ERROR IFGetDeviceInfo(IF_HANDLE hInterface, const char* pszDeviceId, DEVICE_INFO_CMD nCommand, INFO_DATATYPE* pType,
                         void* pBuffer, size_t* pSize) {
    return CCall("IFGetDeviceInfo")
        .Handle(hInterface)
        .Text(pszDeviceId)
        .Number(nCommand)
        .Out(pType, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            Opened<CInterface>(p, hInterface).Listed(Required(pszDeviceId)).GetInfo(nCommand, {pType, pBuffer, pSize});
        });
}

GC_ERROR IFOpenDevice(IF_HANDLE hInterface, const char* pszDeviceId, DEVICE_ACCESS_FLAGS nFlags, DEV_HANDLE* phDevice) {
    return CCall("IFOpenDevice").Handle(hInterface).Text(pszDeviceId).Number(nFlags).Do([&](CProducer& p, LOCK&) {
        DEV_HANDLE& hDevice = Required(phDevice);
        hDevice = Opened<CInterface>(p, hInterface).ForOpening(Required(pszDeviceId)).OpenWith(nFlags);
    });
}

// Beyond the standard. What the double makes of their values: an address is taken over, the rest is recorded.

GC_ERROR IFIpConfiguration(IF_HANDLE hInterface, const char* pszDeviceId, uint32_t nValue, const char* pszText1,
                           const char* pszText2, const char* pszText3, const char* pszText4) {
    return CCall("IFIpConfiguration")
        .Handle(hInterface)
        .Text(pszDeviceId)
        .Value(nValue)
        .Text(pszText1)
        .Text(pszText2)
        .Text(pszText3)
        .Text(pszText4)
        .Do([&](CProducer& p, LOCK&) { Opened<CInterface>(p, hInterface).ForOpening(Required(pszDeviceId)); });
}

GC_ERROR IFForceIp(IF_HANDLE hInterface, const char* pszDeviceId, const char* pszText1, const char* pszText2,
                   const char* pszText3) {
    return CCall("IFForceIp")
        .Handle(hInterface)
        .Text(pszDeviceId)
        .Text(pszText1)
        .Text(pszText2)
        .Text(pszText3)
        .Do([&](CProducer& p, LOCK&) {
            CDevice& objDevice = Opened<CInterface>(p, hInterface).ForOpening(Required(pszDeviceId));
            std::uint32_t nIp = 0, nMask = 0, nGateway = 0;
            if (!ParseIp(Required(pszText1), nIp) || !ParseIp(Required(pszText2), nMask) ||
                !ParseIp(Required(pszText3), nGateway)) {
                Refuse(GC_ERR_INVALID_PARAMETER, "an address isn't dotted");
            }
            objDevice.MoveTo(nIp, nMask, nGateway);
        });
}

GC_ERROR IFResetDevice(IF_HANDLE hInterface, const char* pszDeviceId, uint32_t nValue) {
    return CCall("IFResetDevice").Handle(hInterface).Text(pszDeviceId).Value(nValue).Do([&](CProducer& p, LOCK&) {
        Opened<CInterface>(p, hInterface).ForOpening(Required(pszDeviceId));
    });
}

GC_ERROR IFUpdateSpecialDevice(IF_HANDLE hInterface, const char* pszKey, void* pBuffer, size_t* pSize) {
    return CCall("IFUpdateSpecialDevice")
        .Handle(hInterface)
        .Text(pszKey)
        .Out(nullptr, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            const CDevice& objDevice = Opened<CInterface>(p, hInterface).Answering(Required(pszKey));
            PutBytes({nullptr, pBuffer, pSize}, INFO_DATATYPE_BUFFER, objDevice.DiscoveryReply());
        });
}

}  // extern "C"
