// The features of an interface module: what its description tells, and what each register reads and writes.

#include "producer/ProducerError.h"
#include "producer/modules/InterfaceModule.h"

namespace producer {

namespace {

constexpr CFeature::Number kLimitedBroadcast = 0;
constexpr CFeature::Number kDirectedSubnetBroadcast = 1;

std::uint32_t RequireIPv4(CFeature::Number nValue) {
    if (nValue < 0 || nValue > 0xFFFFFFFF) {
        throw CProducerError(GC_ERR_INVALID_VALUE, std::to_string(nValue) + " is no IPv4 address");
    }
    return static_cast<std::uint32_t>(nValue);
}

}  // namespace

void CInterfaceModule::AddInterfaceFeatures() {
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("InterfaceInformation");
    objMap.Text("InterfaceID", "Identifies the interface", [this] { return GetModuleId(); }).Constant();
    objMap.Enumeration("InterfaceType", "The transport layer of the interface", {{"GigEVision", 1}}, [] { return 1; })
        .Constant();
    const auto funDisplayName = [this] {
        const std::lock_guard objLock(m_mtxState);
        return m_objEntry.DisplayName;
    };
    objMap.Text("InterfaceDisplayName", "The interface's name for users", funDisplayName);
    objMap.Text("InterfaceDescription", "The adapter, with its address", funDisplayName).Custom();
    const auto funNumber = [&](const char* pszName, const char* pszToolTip, const char* pszShown, auto funValue) {
        objMap
            .Integer(pszName, pszToolTip,
                     [this, funValue] { return static_cast<CFeature::Number>(funValue(GetAdapter())); })
            .Shown(pszShown);
    };
    funNumber("GevInterfaceMACAddress", "The MAC of the adapter", "MACAddress",
              [](const ADAPTER& objAdapter) { return objAdapter.Mac; });
    funNumber("GevInterfaceSubnetIPAddress", "The first IPv4 address of the adapter, 0 without one", "IPV4Address",
              [](const ADAPTER& objAdapter) { return objAdapter.GetDefaultAddress().Address; });
    funNumber("GevInterfaceSubnetMask", "The subnet mask that belongs to that address", "IPV4Address",
              [](const ADAPTER& objAdapter) { return objAdapter.GetDefaultAddress().Mask; });
    funNumber("GevInterfaceGateway", "The gateway of the adapter's default route, 0 without one", "IPV4Address",
              [](const ADAPTER& objAdapter) { return objAdapter.Gateway; });
    objMap
        .Integer("GevInterfaceMTU", "The longest packet that the adapter takes, in bytes",
                 [this] { return CFeature::Number{GetAdapter().Mtu}; })
        .Custom()
        .Unit("B");
    objMap
        .Integer("GevInterfaceLink", "1 while the adapter had a link at the last update, 0 without cable or other side",
                 [this] { return GetAdapter().HasLink ? 1 : 0; })
        .Custom();
}

void CInterfaceModule::AddEnumerationFeatures() {
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("DeviceEnumeration");
    objMap.Command("DeviceUpdateList", "Looks for the cameras behind the adapter, which takes a second",
                   [this] { UpdateDevices(GENTL_INFINITE); });
    objMap
        .Enumeration("DeviceUpdateListMode", "Where an update sends its question",
                     {{"LimitedBroadcast", kLimitedBroadcast}, {"DirectedSubnetBroadcast", kDirectedSubnetBroadcast}},
                     [this] {
                         const std::lock_guard objLock(m_mtxState);
                         return m_eMode == DISCOVERY_MODE::Limited ? kLimitedBroadcast : kDirectedSubnetBroadcast;
                     })
        .Custom()
        .Set([this](CFeature::Number nMode) {
            if (nMode != kLimitedBroadcast && nMode != kDirectedSubnetBroadcast) {
                throw CProducerError(GC_ERR_INVALID_VALUE,
                                     "DeviceUpdateListMode has no entry " + std::to_string(nMode));
            }
            const std::lock_guard objLock(m_mtxState);
            m_eMode = nMode == kLimitedBroadcast ? DISCOVERY_MODE::Limited : DISCOVERY_MODE::DirectedSubnet;
        });
    objMap
        .Command("DeviceStopUpdateList", "Ends the update that another thread is waiting for", [this] { StopUpdate(); })
        .Custom();
    objMap
        .Text("DeviceUpdateListAdvice",
              "What to check when cameras are missing after an update; empty when nothing is known to hide them",
              [this] {
                  const std::lock_guard objLock(m_mtxState);
                  return m_strAdvice;
              })
        .Custom();
    objMap
        .Integer("DeviceSelector", "Selects the camera that the features below tell of",
                 [this] {
                     const std::lock_guard objLock(m_mtxState);
                     return static_cast<CFeature::Number>(m_nSelected);
                 })
        .Least(0)
        .Most([this] { return CFeature::Number{GetDeviceCount()} - 1; })
        .Set([this](CFeature::Number nIndex) { Select(nIndex); });
}

std::shared_ptr<const DEVICE_ENTRY> CInterfaceModule::GetSelected() const {
    const std::lock_guard objLock(m_mtxState);
    if (m_nSelected >= m_pList->size()) {
        throw CProducerError(GC_ERR_NOT_AVAILABLE, "no camera is listed on " + m_strAdapter);
    }
    return {m_pList, &(*m_pList)[m_nSelected]};
}

void CInterfaceModule::Select(std::int64_t nIndex) {
    const std::lock_guard objLock(m_mtxState);
    if (nIndex < 0 || static_cast<std::uint64_t>(nIndex) >= m_pList->size()) {
        throw CProducerError(GC_ERR_INVALID_VALUE, "the list has " + std::to_string(m_pList->size()) +
                                                       " devices, none with index " + std::to_string(nIndex));
    }
    m_nSelected = static_cast<std::size_t>(nIndex);
}

void CInterfaceModule::AddDeviceFeatures() {
    CRegisterMap& objMap = GetRegisters();
    const auto funText = [&](const char* pszName, const char* pszToolTip, auto funValue) {
        objMap.Text(pszName, pszToolTip, [this, funValue] { return funValue(*GetSelected()); })
            .SelectedBy("DeviceSelector");
    };
    const auto funNumber = [&](const char* pszName, const char* pszToolTip, const char* pszShown, auto funValue) {
        objMap
            .Integer(pszName, pszToolTip,
                     [this, funValue] { return static_cast<CFeature::Number>(funValue(*GetSelected())); })
            .Shown(pszShown)
            .SelectedBy("DeviceSelector");
    };
    funText("DeviceID", "Identifies the camera", [](const DEVICE_ENTRY& obj) { return obj.Id; });
    funText("DeviceDisplayName", "The camera's name for users",
            [](const DEVICE_ENTRY& obj) { return obj.DisplayName; });
    funText("DeviceVendorName", "Who made the camera", [](const DEVICE_ENTRY& obj) { return obj.Device.Manufacturer; });
    funText("DeviceModelName", "The camera's model", [](const DEVICE_ENTRY& obj) { return obj.Device.Model; });
    funText("DeviceVersion", "The camera's version", [](const DEVICE_ENTRY& obj) { return obj.Device.DeviceVersion; });
    funText("DeviceSerialNumber", "The camera's serial number",
            [](const DEVICE_ENTRY& obj) { return obj.Device.SerialNumber; });
    funText("DeviceUserID", "The name that a user gave the camera",
            [](const DEVICE_ENTRY& obj) { return obj.Device.UserName; });
    funNumber("GevDeviceIPAddress", "The camera's address", "IPV4Address",
              [](const DEVICE_ENTRY& obj) { return obj.Device.Address; });
    funNumber("GevDeviceSubnetMask", "The camera's subnet mask", "IPV4Address",
              [](const DEVICE_ENTRY& obj) { return obj.Device.SubnetMask; });
    funNumber("GevDeviceGateway", "The camera's gateway", "IPV4Address",
              [](const DEVICE_ENTRY& obj) { return obj.Device.Gateway; });
    funNumber("GevDeviceMACAddress", "The camera's MAC", "MACAddress",
              [](const DEVICE_ENTRY& obj) { return obj.Device.Mac; });
    objMap
        .Enumeration("DeviceAccessStatus", "What the camera can be opened for",
                     {{"Unknown", DEVICE_ACCESS_STATUS_UNKNOWN},
                      {"ReadWrite", DEVICE_ACCESS_STATUS_READWRITE},
                      {"ReadOnly", DEVICE_ACCESS_STATUS_READONLY},
                      {"NoAccess", DEVICE_ACCESS_STATUS_NOACCESS},
                      {"Busy", DEVICE_ACCESS_STATUS_BUSY},
                      {"OpenReadWrite", DEVICE_ACCESS_STATUS_OPEN_READWRITE},
                      {"OpenReadOnly", DEVICE_ACCESS_STATUS_OPEN_READONLY}},
                     [this] { return CFeature::Number{GetAccessStatus(*GetSelected())}; })
        .SelectedBy("DeviceSelector");
}

void CInterfaceModule::AddForceIpFeatures() {
    CRegisterMap& objMap = GetRegisters();
    const auto funAddress = [&](const char* pszName, const char* pszToolTip, std::uint32_t IP_SETTINGS::*pMember) {
        objMap
            .Integer(pszName, pszToolTip,
                     [this, pMember] {
                         const std::lock_guard objLock(m_mtxState);
                         return CFeature::Number{m_objForced.*pMember};
                     })
            .Shown("IPV4Address")
            .Set([this, pMember](CFeature::Number nValue) {
                const std::uint32_t nAddress = RequireIPv4(nValue);
                const std::lock_guard objLock(m_mtxState);
                m_objForced.*pMember = nAddress;
            });
    };
    funAddress("GevDeviceForceIPAddress", "The address that GevDeviceForceIP is to give", &IP_SETTINGS::Address);
    funAddress("GevDeviceForceSubnetMask", "The subnet mask that GevDeviceForceIP is to give", &IP_SETTINGS::Mask);
    funAddress("GevDeviceForceGateway", "The gateway that GevDeviceForceIP is to give, 0 for none",
               &IP_SETTINGS::Gateway);
    objMap
        .Command("GevDeviceForceIP", "Gives the selected camera the address above until its next start",
                 [this] {
                     const std::uint64_t nMac = GetSelected()->Device.Mac;
                     IP_SETTINGS objSettings;
                     {
                         const std::lock_guard objLock(m_mtxState);
                         objSettings = m_objForced;
                     }
                     DoForceIp(m_strAdapter, nMac, objSettings, m_objClosing.get_token());
                 })
        .SelectedBy("DeviceSelector");
}

}  // namespace producer
