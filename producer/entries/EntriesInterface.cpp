// The entries of interface modules, the four beyond the standard among them.

#include <cstring>
#include <optional>

#include "gev/Address.h"
#include "producer/entries/Entry.h"
#include "producer/modules/InterfaceModule.h"

using namespace producer;

namespace {

/// @throws CProducerError  GC_ERR_INVALID_PARAMETER for a null text and for what is no IPv4 address
uint32_t RequireAddress(const char* pszText, const char* pszWhat) {
    const std::string strText = RequireText(pszText, pszWhat);
    const std::optional<uint32_t> nAddress = gev::ParseIPv4(strText);
    if (!nAddress) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER,
                             std::string(pszWhat) + " \"" + strText + "\" is no IPv4 address like 192.168.42.83");
    }
    return *nAddress;
}

/// An empty text leaves the camera's setting as it is.
std::optional<uint32_t> OptionalAddress(const char* pszText, const char* pszWhat) {
    if (RequireText(pszText, pszWhat).empty()) {
        return std::nullopt;
    }
    return RequireAddress(pszText, pszWhat);
}

}  // namespace

GC_ERROR IFClose(IF_HANDLE hInterface) {
    return RunInitialisedEntry("IFClose", [&] { CloseModule<CInterfaceModule>(hInterface); });
}

GC_ERROR IFGetInfo(IF_HANDLE hInterface, INTERFACE_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer,
                   size_t* pSize) {
    return RunInitialisedEntry(
        "IFGetInfo", [&] { Require<CInterfaceModule>(hInterface)->GetInfo(nCommand).Deliver(pType, pBuffer, pSize); });
}

GC_ERROR IFGetNumDevices(IF_HANDLE hInterface, uint32_t* pCount) {
    return RunInitialisedEntry("IFGetNumDevices", [&] {
        const auto pInterface = Require<CInterfaceModule>(hInterface);
        RequireOut(pCount, "the number of devices") = pInterface->GetDeviceCount();
    });
}

GC_ERROR IFGetDeviceID(IF_HANDLE hInterface, uint32_t nIndex, char* pszId, size_t* pSize) {
    return RunInitialisedEntry("IFGetDeviceID", [&] {
        DeliverText(Require<CInterfaceModule>(hInterface)->GetDeviceId(nIndex), pszId, pSize);
    });
}

GC_ERROR IFUpdateDeviceList(IF_HANDLE hInterface, bool8_t* pChanged, uint64_t nTimeoutMs) {
    return RunInitialisedEntry("IFUpdateDeviceList", [&] {
        const bool bChanged = Require<CInterfaceModule>(hInterface)->UpdateDevices(nTimeoutMs);
        if (pChanged != nullptr) {
            *pChanged = bChanged ? 1 : 0;
        }
    });
}

GC_ERROR IFGetDeviceInfo(IF_HANDLE hInterface, const char* pszDeviceId, DEVICE_INFO_CMD nCommand, INFO_DATATYPE* pType,
                         void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("IFGetDeviceInfo", [&] {
        const auto pInterface = Require<CInterfaceModule>(hInterface);
        const std::string strId = RequireText(pszDeviceId, "the device's ID");
        pInterface->GetDeviceInfo(strId, nCommand).Deliver(pType, pBuffer, pSize);
    });
}

GC_ERROR IFOpenDevice(IF_HANDLE hInterface, const char* pszDeviceId, DEVICE_ACCESS_FLAGS nFlags, DEV_HANDLE* phDevice) {
    return RunInitialisedEntry("IFOpenDevice", [&] {
        const auto pInterface = Require<CInterfaceModule>(hInterface);
        const std::string strId = RequireText(pszDeviceId, "the device's ID");
        RequireOut(phDevice, "the device handle");
        *phDevice = pInterface->OpenDevice(strId, nFlags);
    });
}

// nValue: the bits of the configuration to switch on (persistent 1, DHCP 2, link-local 4), the others are switched off;
// 0 leaves them as they are. The texts: address, mask, gateway and user-defined name that the camera is to keep; an
// empty one leaves what it has.
GC_ERROR IFIpConfiguration(IF_HANDLE hInterface, const char* pszDeviceId, uint32_t nValue, const char* pszText1,
                           const char* pszText2, const char* pszText3, const char* pszText4) {
    return RunInitialisedEntry("IFIpConfiguration", [&] {
        const auto pInterface = Require<CInterfaceModule>(hInterface);
        const std::string strId = RequireText(pszDeviceId, "the device's ID");
        IP_CONFIGURATION objConfiguration;
        objConfiguration.Configuration = nValue;
        objConfiguration.Address = OptionalAddress(pszText1, "the address");
        objConfiguration.Mask = OptionalAddress(pszText2, "the subnet mask");
        objConfiguration.Gateway = OptionalAddress(pszText3, "the gateway");
        if (const std::string strName = RequireText(pszText4, "the user-defined name"); !strName.empty()) {
            objConfiguration.UserName = strName;
        }
        pInterface->ConfigureIp(strId, objConfiguration);
    });
}

// The texts: address, subnet mask and gateway until the camera's next start; an empty gateway is none.
GC_ERROR IFForceIp(IF_HANDLE hInterface, const char* pszDeviceId, const char* pszText1, const char* pszText2,
                   const char* pszText3) {
    return RunInitialisedEntry("IFForceIp", [&] {
        const auto pInterface = Require<CInterfaceModule>(hInterface);
        const std::string strId = RequireText(pszDeviceId, "the device's ID");
        IP_SETTINGS objSettings;
        objSettings.Address = RequireAddress(pszText1, "the address");
        objSettings.Mask = RequireAddress(pszText2, "the subnet mask");
        objSettings.Gateway = OptionalAddress(pszText3, "the gateway").value_or(0);
        pInterface->ForceIp(strId, objSettings);
    });
}

// nValue: 0 starts the camera's IP configuration again, the one reset that every GigE Vision camera knows. Anything
// more is a feature of the camera's own description, DeviceReset, for a device that is open.
GC_ERROR IFResetDevice(IF_HANDLE hInterface, const char* pszDeviceId, uint32_t nValue) {
    return RunInitialisedEntry("IFResetDevice", [&] {
        const auto pInterface = Require<CInterfaceModule>(hInterface);
        const std::string strId = RequireText(pszDeviceId, "the device's ID");
        if (nValue != 0) {
            throw CProducerError(GC_ERR_NOT_IMPLEMENTED,
                                 "only the reset 0 is known, which starts the IP configuration again; open the device "
                                 "and use its feature DeviceReset for more");
        }
        pInterface->RestartIp(strId);
    });
}

// pszKey: the camera's address. The reply is told with DISCOVERY_REPLY.
GC_ERROR IFUpdateSpecialDevice(IF_HANDLE hInterface, const char* pszKey, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("IFUpdateSpecialDevice", [&] {
        const auto pInterface = Require<CInterfaceModule>(hInterface);
        const uint32_t nAddress = RequireAddress(pszKey, "the address");
        size_t& nSize = RequireOut(pSize, "the size");
        if (pBuffer != nullptr && nSize < ZR_SPECIAL_DEVICE_REPLY_SIZE) {
            throw CProducerError(GC_ERR_BUFFER_TOO_SMALL,
                                 "the buffer has " + std::to_string(nSize) + " bytes, the reply 256");
        }
        if (pBuffer != nullptr) {
            const DISCOVERY_REPLY arrReply = pInterface->AskDevice(nAddress);
            std::memcpy(pBuffer, arrReply.data(), arrReply.size());
        }
        nSize = ZR_SPECIAL_DEVICE_REPLY_SIZE;
    });
}
