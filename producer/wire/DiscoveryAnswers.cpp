#include "producer/wire/DiscoveryAnswers.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "gev/Bootstrap.h"
#include "gev/GvcpRegister.h"
#include "producer/wire/DeviceText.h"

namespace producer {

namespace {

constexpr std::uint64_t kGroupBit = 0x0100'0000'0000;  // addresses of no single adapter
constexpr int kMostAsked = 4;                          // addresses of one MAC: a single sender may name any number

/// Two answers with one MAC come from two cameras when the serial numbers differ, or the addresses where there is no
/// serial number. A camera that got a new address between two questions stays one.
bool IsSameCamera(const gev::DISCOVERY_RECORD& objOne, const gev::DISCOVERY_RECORD& objOther) {
    return objOne.SerialNumber == objOther.SerialNumber &&
           (objOne.IP == objOther.IP || !objOne.SerialNumber.GetText().empty());
}

/// Of two cameras with one MAC the same is kept, whichever is quicker to answer.
bool IsKeptBefore(const gev::DISCOVERY_RECORD& objOne, const gev::DISCOVERY_RECORD& objOther) {
    return std::tuple(objOne.SerialNumber.GetText(), objOne.IP) <
           std::tuple(objOther.SerialNumber.GetText(), objOther.IP);
}

}  // namespace

DEVICE_ACCESS_STATUS GetAccessStatus(gev::EGvcpStatus nStatus, std::uint32_t nPrivilege) {
    if (nStatus == gev::EGvcpStatus::AccessDenied) {
        return DEVICE_ACCESS_STATUS_NOACCESS;
    }
    if (nStatus != gev::EGvcpStatus::Success) {
        return DEVICE_ACCESS_STATUS_UNKNOWN;
    }
    if ((nPrivilege & gev::bootstrap::kPrivilegeExclusive) != 0) {
        return DEVICE_ACCESS_STATUS_NOACCESS;
    }
    return (nPrivilege & gev::bootstrap::kPrivilegeControl) != 0 ? DEVICE_ACCESS_STATUS_READONLY
                                                                 : DEVICE_ACCESS_STATUS_READWRITE;
}

CDiscoveryAnswers::CDiscoveryAnswers(ADAPTER objAdapter, std::size_t nMostDevices)
    : m_objAdapter(std::move(objAdapter)), m_nMostDevices(nMostDevices) {}

std::uint32_t CDiscoveryAnswers::AddRecord(const gev::DISCOVERY_RECORD& objRecord) {
    const std::uint64_t nMac = objRecord.MAC.GetValue();
    if (nMac == 0 || (nMac & kGroupBit) != 0) {
        ++m_nRefused;
        return 0;
    }
    auto itHeard = m_mapHeard.find(nMac);
    if (itHeard == m_mapHeard.end()) {
        if (m_mapHeard.size() >= m_nMostDevices) {
            ++m_nSurplus;
            return 0;
        }
        itHeard = m_mapHeard.emplace(nMac, HEARD{objRecord}).first;
    } else if (HEARD& objHeard = itHeard->second; IsSameCamera(objHeard.Record, objRecord)) {
        objHeard.Record = objRecord;
    } else {
        objHeard.SharesMac = true;
        if (IsKeptBefore(objRecord, objHeard.Record)) {
            objHeard.Record = objRecord;
        }
    }
    const bool bAsk = itHeard->second.Asked < kMostAsked && m_objAdapter.IsUsableForCamera(objRecord.IP) &&
                      m_mapPrivileges.size() < m_nMostDevices &&
                      m_mapPrivileges.try_emplace(objRecord.IP, DEVICE_ACCESS_STATUS_UNKNOWN).second;
    itHeard->second.Asked += bAsk ? 1 : 0;
    return bAsk ? objRecord.IP : 0;
}

void CDiscoveryAnswers::AddPrivilege(std::uint32_t nSource, gev::EGvcpStatus nStatus,
                                     std::span<const std::byte> objPayload) {
    const auto itAsked = m_mapPrivileges.find(nSource);
    gev::CNumberView objValues;
    const bool bGood = nStatus != gev::EGvcpStatus::Success ||
                       gev::DecodeReadRegAck(objPayload, 1, objValues) == gev::EGvcpStatus::Success;
    if (itAsked == m_mapPrivileges.end() || !bGood) {
        ++m_nRefused;
        return;
    }
    itAsked->second = GetAccessStatus(nStatus, nStatus == gev::EGvcpStatus::Success ? objValues.Get(0) : 0);
}

std::vector<std::uint32_t> CDiscoveryAnswers::GetUnanswered() const {
    std::vector<std::uint32_t> vecAddresses;
    for (const auto& [nAddress, nStatus] : m_mapPrivileges) {
        if (nStatus == DEVICE_ACCESS_STATUS_UNKNOWN) {
            vecAddresses.push_back(nAddress);
        }
    }
    return vecAddresses;
}

std::vector<DISCOVERED_DEVICE> CDiscoveryAnswers::MakeList() const {
    std::vector<DISCOVERED_DEVICE> vecDevices;
    std::unordered_map<std::uint32_t, int> mapCounts;
    vecDevices.reserve(m_mapHeard.size());
    for (const auto& [nMac, objHeard] : m_mapHeard) {
        vecDevices.push_back(MakeDevice(objHeard));
        ++mapCounts[objHeard.Record.IP];
    }
    for (auto& objDevice : vecDevices) {
        objDevice.SharesAddress = objDevice.Address != 0 && mapCounts[objDevice.Address] > 1;
    }
    std::sort(vecDevices.begin(), vecDevices.end(),
              [](const auto& objOne, const auto& objOther) { return objOne.Mac < objOther.Mac; });
    return vecDevices;
}

DISCOVERED_DEVICE CDiscoveryAnswers::MakeDevice(const HEARD& objHeard) const {
    const auto& objRecord = objHeard.Record;
    DISCOVERED_DEVICE objDevice;
    objDevice.Mac = objRecord.MAC.GetValue();
    objDevice.Address = objRecord.IP;
    objDevice.SubnetMask = objRecord.SubnetMask;
    objDevice.Gateway = objRecord.Gateway;
    objDevice.VersionMajor = objRecord.VersionMajor;
    objDevice.VersionMinor = objRecord.VersionMinor;
    objDevice.DeviceMode = objRecord.DeviceMode;
    objDevice.SupportedIpConfiguration = objRecord.SupportedIPConfiguration;
    objDevice.CurrentIpConfiguration = objRecord.CurrentIPConfiguration;
    objDevice.Manufacturer = CleanDeviceText(objRecord.ManufacturerName.GetText());
    objDevice.Model = CleanDeviceText(objRecord.ModelName.GetText());
    objDevice.DeviceVersion = CleanDeviceText(objRecord.DeviceVersion.GetText());
    objDevice.ManufacturerInfo = CleanDeviceText(objRecord.ManufacturerInformation.GetText());
    objDevice.SerialNumber = CleanDeviceText(objRecord.SerialNumber.GetText());
    objDevice.UserName = CleanDeviceText(objRecord.UserDefinedName.GetText());
    objDevice.SharesMac = objHeard.SharesMac;
    objDevice.IsOutsideSubnet = !m_objAdapter.IsInside(objRecord.IP);
    const auto itAsked = m_mapPrivileges.find(objRecord.IP);
    if (itAsked != m_mapPrivileges.end()) {
        objDevice.AccessStatus = itAsked->second;
    } else if (objDevice.IsOutsideSubnet) {
        objDevice.AccessStatus = DEVICE_ACCESS_STATUS_NOACCESS;
    }
    return objDevice;
}

}  // namespace producer
