#include "producer/modules/DeviceEntry.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "gev/Address.h"
#include "producer/ProducerError.h"
#include "support/Address.h"

namespace producer {

namespace {

/// What a user must know before trying to open it, the gravest first; empty when there is nothing. A window's list cuts
/// off what is long.
std::string_view RemarkOn(const DISCOVERED_DEVICE& objDevice) {
    if (objDevice.IsOutsideSubnet) {
        return " wrong subnet";
    }
    if (objDevice.SharesAddress) {
        return " shared address";
    }
    if (objDevice.SharesMac) {
        return " shared MAC";
    }
    if (objDevice.AccessStatus == DEVICE_ACCESS_STATUS_READONLY ||
        objDevice.AccessStatus == DEVICE_ACCESS_STATUS_NOACCESS) {
        return " in use";
    }
    return {};
}

}  // namespace

DEVICE_ENTRY MakeDeviceEntry(DISCOVERED_DEVICE objDevice, bool bControlledHere) {
    if (bControlledHere) {
        objDevice.AccessStatus = DEVICE_ACCESS_STATUS_READWRITE;  // as it is from the moment on that it is closed here
    }
    const std::string strMac = MACToString(objDevice.Mac);
    DEVICE_ENTRY objEntry;
    objEntry.Id = objDevice.Model + '(' + strMac + ')';
    objEntry.DisplayName = objDevice.Model + '(' + IPToString(objDevice.Address) + '[' + strMac + "])";
    objEntry.DisplayName += RemarkOn(objDevice);
    objEntry.Device = std::move(objDevice);
    return objEntry;
}

CInfoValue GetDeviceEntryInfo(const DEVICE_ENTRY& objEntry, DEVICE_ACCESS_STATUS nAccessStatus,
                              DEVICE_INFO_CMD nCommand) {
    switch (nCommand) {
        case DEVICE_INFO_ID:
            return CInfoValue::Text(objEntry.Id);
        case DEVICE_INFO_VENDOR:
            return CInfoValue::Text(objEntry.Device.Manufacturer);
        case DEVICE_INFO_MODEL:
            return CInfoValue::Text(objEntry.Device.Model);
        case DEVICE_INFO_TLTYPE:
            return CInfoValue::Text("GEV");
        case DEVICE_INFO_DISPLAYNAME:
            return CInfoValue::Text(objEntry.DisplayName);
        case DEVICE_INFO_ACCESS_STATUS:
            return CInfoValue::Int32(nAccessStatus);
        case DEVICE_INFO_USER_DEFINED_NAME:
            return CInfoValue::Text(objEntry.Device.UserName);
        case DEVICE_INFO_SERIAL_NUMBER:
            return CInfoValue::Text(objEntry.Device.SerialNumber);
        case DEVICE_INFO_VERSION:
            return CInfoValue::Text(objEntry.Device.DeviceVersion);
        default:
            throw CProducerError(GC_ERR_NOT_AVAILABLE,
                                 "nothing is known of a device for the info command " + std::to_string(nCommand));
    }
}

const DEVICE_ENTRY* FindDevice(const DEVICE_LIST& vecDevice, std::string_view strId) {
    constexpr std::size_t kMacLength = 17;
    if (strId.size() < kMacLength + 2) {
        return nullptr;
    }
    // A list may hold thousands, each asked for by its ID again and again; it is in the order of the MACs.
    const std::optional<gev::CMACAddress> objMac =
        gev::ParseMAC(strId.substr(strId.size() - kMacLength - 1, kMacLength));
    if (!objMac) {
        return nullptr;
    }
    const auto itEntry =
        std::lower_bound(vecDevice.begin(), vecDevice.end(), objMac->GetValue(),
                         [](const DEVICE_ENTRY& objEntry, std::uint64_t nMac) { return objEntry.Device.Mac < nMac; });
    return itEntry != vecDevice.end() && itEntry->Id == strId ? &*itEntry : nullptr;
}

}  // namespace producer
