// An update of an adapter that hears anything: what it lists can be shown and told apart, and is no more than it may
// be.

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "gev/GvcpDiscovery.h"
#include "producer/ProducerError.h"
#include "producer/modules/DeviceEntry.h"
#include "producer/modules/DeviceReply.h"
#include "producer/wire/DeviceText.h"
#include "producer/wire/DiscoveryAnswers.h"
#include "tests/FuzzInput.h"

namespace {

using namespace producer;

constexpr std::size_t kMostDevices = 6;
constexpr std::size_t kLongestText = 48 * 3;  // each byte may have become U+FFFD

ADAPTER MakeAdapter() {
    ADAPTER objAdapter;
    objAdapter.Name = "eth1";
    objAdapter.Addresses = {{0xC0A80A01, 0xFFFFFF00, 0xC0A80AFF}};
    return objAdapter;
}

void RequireShowable(const std::string& strText) {
    Require(strText.size() <= kLongestText && CleanDeviceText(strText) == strText);
}

void RequireShowable(const DISCOVERED_DEVICE& objDevice) {
    for (const std::string* pText : {&objDevice.Manufacturer, &objDevice.Model, &objDevice.DeviceVersion,
                                     &objDevice.ManufacturerInfo, &objDevice.SerialNumber, &objDevice.UserName}) {
        RequireShowable(*pText);
    }
}

void Hear(CDiscoveryAnswers& objAnswers, std::span<const std::byte> arrDatagram) {
    gev::GVCP_ACKNOWLEDGE_HEADER objHeader;
    std::span<const std::byte> arrPayload;
    if (gev::DecodeAcknowledge(arrDatagram, objHeader, arrPayload) != gev::EGvcpStatus::Success) {
        return;
    }
    gev::DISCOVERY_RECORD objRecord;
    if (objHeader.Command == gev::EGvcpCommand::ReadReg) {
        objAnswers.AddPrivilege(0xC0A80A00U | objHeader.AckID, objHeader.Status, arrPayload);
    } else if (gev::DecodeDiscoveryAck(arrPayload, objRecord) == gev::EGvcpStatus::Success) {
        objAnswers.AddRecord(objRecord);
    }
}

void TryEntry(const DISCOVERED_DEVICE& objDevice, bool bControlledHere) {
    const DEVICE_ENTRY objEntry = MakeDeviceEntry(objDevice, bControlledHere);
    Require(objEntry.Id.ends_with(')') && objEntry.Id.find('\0') == std::string::npos);
    for (DEVICE_INFO_CMD nCommand = -1; nCommand < 16; ++nCommand) {
        try {
            const CInfoValue objValue = GetDeviceEntryInfo(objEntry, objDevice.AccessStatus, nCommand);
            char aText[8];
            std::size_t nSize = sizeof(aText);
            objValue.Deliver(nullptr, aText, &nSize);
        } catch (const CProducerError&) {  // not known, or larger than the text
        }
    }
}

void TryReply(CFuzzInput& objInput) {
    DISCOVERY_REPLY arrReply{};
    std::ranges::copy(objInput.TakeBytes(arrReply.size()), arrReply.begin());
    try {
        RequireShowable(ReadDeviceReply(arrReply, 0xC0A80A05, MakeAdapter()));
    } catch (const CProducerError&) {
    }
}

}  // namespace

/// Each datagram is told by its length in two bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CFuzzInput objInput(pData, nSize);
    CDiscoveryAnswers objAnswers(MakeAdapter(), kMostDevices);
    TryReply(objInput);
    while (!objInput.IsEmpty()) {
        Hear(objAnswers, objInput.TakeBytes(objInput.Take<std::uint16_t>() % 600U));
    }
    const auto vecDevice = objAnswers.MakeList();
    Require(vecDevice.size() <= kMostDevices && objAnswers.GetUnanswered().size() <= kMostDevices);
    std::set<std::uint64_t> setMac;
    for (const DISCOVERED_DEVICE& objDevice : vecDevice) {
        Require(objDevice.Mac != 0 && setMac.insert(objDevice.Mac).second);
        RequireShowable(objDevice);
        TryEntry(objDevice, objDevice.SharesMac);
    }
    return 0;
}
