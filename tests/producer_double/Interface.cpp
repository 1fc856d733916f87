#include "tests/producer_double/Interface.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace ProducerDouble {

namespace {

constexpr const char* kSelector = "DeviceSelector";
constexpr std::uint64_t kLongestTimedWaitMs = std::uint64_t{1} << 40;

}  // namespace

CInterface::CInterface(CONTEXT& objContext, const std::string& strId, std::uint32_t nNumber)
    : CModule(objContext, strId, "TLInterface", "InterfacePort"), m_nNumber(nNumber) {
    Port().AddText("InterfaceID", strId).AddText("InterfaceDescription", "Adapter " + strId);
    Port().AddInteger("GevInterfaceGateway", 0).AddInteger("GevInterfaceSubnetIPAddress", 0);
    Port().AddInteger("GevInterfaceMACAddress", 0).AddInteger("GevInterfaceSubnetMask", 0);
    Port().AddEnumeration("DeviceUpdateListMode", 0, {{"DirectedSubnetBroadcast", 0}, {"LimitedBroadcast", 1}});
    Port().AddCommand("DeviceStopUpdateList");
    Port().OnWriteInside("DeviceStopUpdateList", [this] {
        m_bStopRequested = true;
        _Changed();
    });
    Port().AddSelector(kSelector);
    for (const char* pszText : {"DeviceID", "DeviceVersion", "DeviceSerialNumber", "DeviceUserID"}) {
        Port().AddListFeature(kSelector, pszText, FEATURE::KIND::Text);
    }
    for (const char* pszNumber :
         {"GevDeviceGateway", "GevDeviceIPAddress", "GevDeviceMACAddress", "GevDeviceSubnetMask"}) {
        Port().AddListFeature(kSelector, pszNumber, FEATURE::KIND::Integer);
    }
    _DefaultInfo(INTERFACE_INFO_ID, ANSWER::Text(strId));
    _DefaultInfo(INTERFACE_INFO_DISPLAYNAME, ANSWER::Text(strId));
    _DefaultInfo(INTERFACE_INFO_TLTYPE, ANSWER::Text("GEV"));
    Address({Ipv4(192, 168, nNumber, 1), Ipv4(255, 255, 255, 0), 0, std::uint64_t{0x020000000000} | nNumber});
}

// What a test does.

IDeviceControl& CInterface::Plug(const std::string& strId) {
    LOCK lock = _Enter();
    CDevice* pDevice = Find(strId);
    if (pDevice == nullptr) {
        const auto nDevice = static_cast<std::uint32_t>(m_vecDevice.size());
        lock.unlock();
        const GEV_ADDRESS objAddress{Ipv4(192, 168, m_nNumber, 10) + nDevice, Ipv4(255, 255, 255, 0),
                                     Ipv4(192, 168, m_nNumber, 1),
                                     std::uint64_t{0x021000000000} | (m_nNumber << 16) | nDevice};
        auto pNew = std::make_shared<CDevice>(_Context(), strId, objAddress);
        lock.lock();
        pDevice = m_vecDevice.emplace_back(std::move(pNew)).get();
    }
    pDevice->Plug();
    return *pDevice;
}

IInterfaceControl& CInterface::Unplug(const std::string& strId) {
    const LOCK lock = _Enter();
    __Known(strId).Unplug();
    return *this;
}

IDeviceControl& CInterface::Device(const std::string& strId) {
    const LOCK lock = _Enter();
    return __Known(strId);
}

CDevice& CInterface::__Known(const std::string& strId) const {
    if (CDevice* pDevice = Find(strId)) {
        return *pDevice;
    }
    throw std::out_of_range(Name() + " never had a device " + strId);
}

IInterfaceControl& CInterface::Lists(std::optional<std::vector<std::string>> vecId) {
    const LOCK lock = _Enter();
    for (const std::string& strId : vecId.value_or(std::vector<std::string>{})) {
        __Known(strId);
    }
    m_vecScriptedList = std::move(vecId);
    return *this;
}

IInterfaceControl& CInterface::Address(GEV_ADDRESS objAddress) {
    {
        const LOCK lock = _Enter();
        m_objAddress = objAddress;
    }
    Port().SetInteger("GevInterfaceGateway", objAddress.nGateway);
    Port().SetInteger("GevInterfaceSubnetIPAddress", objAddress.nIp);
    Port().SetInteger("GevInterfaceMACAddress", static_cast<std::int64_t>(objAddress.nMac));
    Port().SetInteger("GevInterfaceSubnetMask", objAddress.nMask);
    return *this;
}

IInterfaceControl& CInterface::WaitWholeWindow(bool bWait) {
    const LOCK lock = _Enter();
    m_bWaitWholeWindow = bWait;
    return *this;
}

IInterfaceControl& CInterface::SelectorMax(std::optional<std::int64_t> nMax) {
    const LOCK lock = _Enter();
    m_nScriptedMax = nMax;
    return *this;
}

// What the consumer sees.

bool CInterface::UpdateList(LOCK& lock, std::uint64_t nTimeoutMs) {
    m_bStopRequested = false;  // a stop without an update is forgotten
    if (m_bWaitWholeWindow) {
        const auto IsStopped = [this] { return m_bStopRequested; };
        if (nTimeoutMs > kLongestTimedWaitMs) {
            _Context().objMonitor.changed.wait(lock, IsStopped);
        } else {
            _Context().objMonitor.changed.wait_for(lock, std::chrono::milliseconds(nTimeoutMs), IsStopped);
        }
    }
    auto vecNew = __Visible();
    const bool bChanged = vecNew != m_vecList;
    m_vecList = std::move(vecNew);
    __FillListFeatures();
    return bChanged;
}

std::vector<std::shared_ptr<CDevice>> CInterface::__Visible() const {
    std::vector<std::shared_ptr<CDevice>> vecVisible;
    if (!m_vecScriptedList) {
        std::copy_if(m_vecDevice.begin(), m_vecDevice.end(), std::back_inserter(vecVisible),
                     [](const auto& pDevice) { return pDevice->IsListed(); });
        return vecVisible;
    }
    for (const std::string& strId : *m_vecScriptedList) {
        for (const auto& pDevice : m_vecDevice) {
            if (pDevice->Name() == strId) {
                vecVisible.push_back(pDevice);
            }
        }
    }
    return vecVisible;
}

void CInterface::__FillListFeatures() {
    Port().SetSelectorMax(kSelector, m_nScriptedMax.value_or(static_cast<std::int64_t>(m_vecList.size()) - 1));
    Port().SetList("DeviceID", m_vecList, [](const CDevice& m) { return m.Name(); });
    Port().SetList("DeviceVersion", m_vecList, [](const CDevice& m) { return std::string(m.kVersion); });
    Port().SetList("DeviceSerialNumber", m_vecList, [](const CDevice& m) { return m.SerialNumber(); });
    Port().SetList("DeviceUserID", m_vecList, [](const CDevice& m) { return m.UserIdText(); });
    Port().SetList("GevDeviceGateway", m_vecList, [](const CDevice& m) { return m.GevAddress().nGateway; });
    Port().SetList("GevDeviceIPAddress", m_vecList, [](const CDevice& m) { return m.GevAddress().nIp; });
    Port().SetList("GevDeviceMACAddress", m_vecList, [](const CDevice& m) { return m.GevAddress().nMac; });
    Port().SetList("GevDeviceSubnetMask", m_vecList, [](const CDevice& m) { return m.GevAddress().nMask; });
}

CDevice& CInterface::Listed(std::size_t nIndex) const {
    if (nIndex >= m_vecList.size()) {
        Refuse(GC_ERR_INVALID_INDEX, Name() + " lists no device of this index");
    }
    return *m_vecList[nIndex];
}

CDevice& CInterface::Listed(const std::string& strId) const {
    for (const auto& pDevice : m_vecList) {
        if (pDevice->Name() == strId) {
            return *pDevice;
        }
    }
    Refuse(GC_ERR_INVALID_ID, Name() + " lists no device " + strId);
}

CDevice& CInterface::ForOpening(const std::string& strId) const {
    constexpr std::string_view kByAddress = "IP::";
    return strId.starts_with(kByAddress) ? Answering(strId.substr(kByAddress.size())) : Listed(strId);
}

CDevice& CInterface::Answering(const std::string& strIp) const {
    for (const auto& pDevice : m_vecDevice) {
        if (pDevice->IsPlugged() && pDevice->IsAt(strIp)) {
            return *pDevice;
        }
    }
    Refuse(GC_ERR_TIMEOUT, "no device answers at " + strIp);
}

CDevice* CInterface::Find(const std::string& strId) const {
    for (const auto& pDevice : m_vecDevice) {
        if (pDevice->Name() == strId) {
            return pDevice.get();
        }
    }
    return nullptr;
}

void CInterface::_CloseChildren() {
    for (const auto& pDevice : m_vecDevice) {
        pDevice->Close();
    }
    m_vecList.clear();  // the next one to open it starts without a list
    __FillListFeatures();
    m_bStopRequested = true;  // nobody waits in an interface that is closed
    _Changed();
}

}  // namespace ProducerDouble
