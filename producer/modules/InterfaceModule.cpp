#include "producer/modules/InterfaceModule.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include "gev/Address.h"
#include "producer/ProducerError.h"
#include "producer/modules/DeviceReply.h"
#include "support/Address.h"

namespace producer {

namespace {

/// The address in a device ID of the form "IP::192.168.42.83"; nothing for any other ID.
std::optional<std::uint32_t> AddressOfId(std::string_view strId) {
    constexpr std::string_view kPrefix = "IP::";
    return strId.starts_with(kPrefix) ? gev::ParseIPv4(strId.substr(kPrefix.size())) : std::nullopt;
}

}  // namespace

CInterfaceModule::CInterfaceModule(INTERFACE_ENTRY objEntry, std::function<void()> funClosed)
    : CModule("TLInterface", objEntry.Id,
              {"NorvikInterface", "One network adapter and the cameras behind it", "InterfacePort",
               "6B1E3A52-0C3D-4E61-9A57-2F4D0B8C7E12"}),
      m_strAdapter(objEntry.Adapter.Name),
      m_funClosed(std::move(funClosed)),
      m_objDiscovery(m_strAdapter),
      m_objEntry(std::move(objEntry)),
      m_pList(std::make_shared<const DEVICE_LIST>()) {
    AddInterfaceFeatures();
    AddEnumerationFeatures();
    AddDeviceFeatures();
    AddForceIpFeatures();
    GetRegisters().Finish();
}

CInfoValue CInterfaceModule::GetInfo(INTERFACE_INFO_CMD nCommand) const {
    const std::lock_guard objLock(m_mtxState);
    return GetInterfaceEntryInfo(m_objEntry, nCommand);
}

ADAPTER CInterfaceModule::GetAdapter() const {
    const std::lock_guard objLock(m_mtxState);
    return m_objEntry.Adapter;
}

std::shared_ptr<const DEVICE_LIST> CInterfaceModule::GetList() const {
    const std::lock_guard objLock(m_mtxState);
    return m_pList;
}

std::uint32_t CInterfaceModule::GetDeviceCount() const {
    return static_cast<std::uint32_t>(GetList()->size());
}

std::string CInterfaceModule::GetDeviceId(std::uint32_t nIndex) const {
    const std::shared_ptr<const DEVICE_LIST> pList = GetList();
    if (nIndex >= pList->size()) {
        throw CProducerError(GC_ERR_INVALID_INDEX, "the list has " + std::to_string(pList->size()) +
                                                       " devices, none with index " + std::to_string(nIndex));
    }
    return (*pList)[nIndex].Id;
}

std::shared_ptr<const DEVICE_ENTRY> CInterfaceModule::FindListed(const std::string& strId) const {
    const std::shared_ptr<const DEVICE_LIST> pList = GetList();
    if (const DEVICE_ENTRY* pEntry = FindDevice(*pList, strId)) {
        return {pList, pEntry};
    }
    throw CProducerError(GC_ERR_INVALID_ID, "no camera \"" + strId + "\" is listed on " + m_strAdapter +
                                                ". Update the list, or name it by its address, as in "
                                                "IP::192.168.42.83");
}

CInfoValue CInterfaceModule::GetDeviceInfo(const std::string& strId, DEVICE_INFO_CMD nCommand) const {
    const auto pEntry = FindListed(strId);
    return GetDeviceEntryInfo(*pEntry, GetAccessStatus(*pEntry), nCommand);
}

DEVICE_ACCESS_STATUS CInterfaceModule::GetAccessStatus(const DEVICE_ENTRY& objEntry) const {
    const std::shared_ptr<CDeviceModule> pOpen = m_objDevices.Find(MACToString(objEntry.Device.Mac));
    return pOpen ? pOpen->GetAccessStatus() : objEntry.Device.AccessStatus;
}

bool CInterfaceModule::UpdateDevices(std::uint64_t nTimeoutMs) {
    const std::lock_guard objUpdate(m_mtxUpdate);
    RequireOpen();
    DISCOVERY_MODE eMode = DISCOVERY_MODE::Limited;
    {
        const std::lock_guard objLock(m_mtxState);
        eMode = m_eMode;
    }
    const std::chrono::milliseconds objTimeout(
        std::min(nTimeoutMs, static_cast<std::uint64_t>(kLongestDiscovery.count())));
    DISCOVERY_RESULT objResult = m_objDiscovery.DoUpdate(eMode, objTimeout);
    if (IsClosing()) {
        throw CProducerError(GC_ERR_ABORT, GetModuleId() + " was closed during the update");
    }
    const bool bChanged = MergeDevices(m_vecDiscovered, objResult);
    TakeResult(std::move(objResult));
    return bChanged;
}

/// Makes the list anew even if the cameras are the same: whether this process controls one shows in its name.
void CInterfaceModule::TakeResult(DISCOVERY_RESULT objResult) {
    auto pList = std::make_shared<DEVICE_LIST>();
    pList->reserve(m_vecDiscovered.size());
    for (const DISCOVERED_DEVICE& objDevice : m_vecDiscovered) {
        // Who only reads here tells nothing of who controls it.
        const std::shared_ptr<CDeviceModule> pOpen = m_objDevices.Find(MACToString(objDevice.Mac));
        const bool bControlledHere = pOpen && pOpen->GetAccessStatus() == DEVICE_ACCESS_STATUS_OPEN_READWRITE;
        pList->push_back(MakeDeviceEntry(objDevice, bControlledHere));
    }
    const std::lock_guard objLock(m_mtxState);
    m_pList = std::move(pList);
    m_nSelected = m_pList->empty() ? 0 : std::min(m_nSelected, m_pList->size() - 1);
    m_strAdvice = std::move(objResult.Advice);
    if (objResult.Adapter) {
        // The ID stays: it is what the interface was opened by.
        INTERFACE_ENTRY objEntry = MakeInterfaceEntry(*std::move(objResult.Adapter));
        objEntry.Id = std::move(m_objEntry.Id);
        m_objEntry = std::move(objEntry);
    }
}

DEVICE_ENTRY CInterfaceModule::Resolve(const std::string& strId) const {
    const std::optional<std::uint32_t> nAddress = AddressOfId(strId);
    if (!nAddress) {
        return *FindListed(strId);
    }
    return MakeDeviceEntry(ReadDeviceReply(AskDevice(*nAddress), *nAddress, GetAdapter()), false);
}

void* CInterfaceModule::OpenDevice(const std::string& strId, DEVICE_ACCESS_FLAGS nAccess) {
    const CONTROL_ACCESS eAccess = ControlAccessOf(nAccess);
    const DEVICE_ENTRY objEntry = Resolve(strId);
    const std::string strMac = MACToString(objEntry.Device.Mac);
    try {
        return m_objDevices.Open(strMac, [&] {
            return std::make_shared<CDeviceModule>(GetAdapter(), objEntry, eAccess, m_objClosing.get_token(),
                                                   [this, strMac] { m_objDevices.Forget(strMac); });
        });
    } catch (const CProducerError& objError) {
        if (!objEntry.Device.IsOutsideSubnet) {
            throw;
        }
        // Tried all the same, since a route may lead there; when none does, this is why.
        throw CProducerError(objError.GetCode(), std::string(objError.what()) + ". Its address " +
                                                     IPToString(objEntry.Device.Address) + " is in no subnet of " +
                                                     m_strAdapter + " and must be changed first");
    }
}

void CInterfaceModule::ForceIp(const std::string& strId, const IP_SETTINGS& objSettings) {
    DoForceIp(m_strAdapter, Resolve(strId).Device.Mac, objSettings, m_objClosing.get_token());
}

void CInterfaceModule::ConfigureIp(const std::string& strId, const IP_CONFIGURATION& objConfiguration) {
    const DEVICE_ENTRY objEntry = Resolve(strId);
    // A camera that is open here may be under our own control, which a second channel would be refused for.
    const std::shared_ptr<CDeviceModule> pOpen = m_objDevices.Find(MACToString(objEntry.Device.Mac));
    if (pOpen && pOpen->GetAccessStatus() == DEVICE_ACCESS_STATUS_OPEN_READWRITE) {
        DoConfigureIp(pOpen->GetChannel(), objConfiguration);
        return;
    }
    DoConfigureIp(m_strAdapter, objEntry.Device.Mac, objConfiguration);
}

void CInterfaceModule::RestartIp(const std::string& strId) {
    DoRestartIpConfiguration(m_strAdapter, Resolve(strId).Device.Mac, m_objClosing.get_token());
}

DISCOVERY_REPLY CInterfaceModule::AskDevice(std::uint32_t nAddress) const {
    return DoAskDevice(m_strAdapter, nAddress);
}

/// An update that was past the test for an open module, and not yet where a stop reaches it, is stopped the next time.
void CInterfaceModule::EndUpdates() noexcept {
    for (;;) {
        StopUpdate();
        if (const std::unique_lock objLock(m_mtxUpdate, std::try_to_lock); objLock.owns_lock()) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void CInterfaceModule::DoClose() noexcept {
    m_objClosing.request_stop();
    EndUpdates();
    m_objDevices.CloseAll();
    m_objDevices.AwaitOpeners();  // they were just told to give up
    m_funClosed();
}

}  // namespace producer
