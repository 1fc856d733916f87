#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

#include "producer/modules/Children.h"
#include "producer/modules/DeviceEntry.h"
#include "producer/modules/DeviceModule.h"
#include "producer/modules/InterfaceEntry.h"
#include "producer/modules/Module.h"
#include "producer/wire/Discovery.h"
#include "producer/wire/IpOperations.h"

namespace producer {

/// An interface module: one network adapter and the cameras behind it.
///
/// Owned by the system module while it is open. The list of devices changes in UpdateDevices alone, whatever is heard
/// from the cameras, and the GenTL indices and DeviceSelector read the same list. All operations may be called from any
/// thread; StopUpdate and the registers wait for no update.
class CInterfaceModule : public CModule {
public:
    /// @param funClosed  called last in the close
    CInterfaceModule(INTERFACE_ENTRY objEntry, std::function<void()> funClosed);

    /// @throws CProducerError  GC_ERR_NOT_AVAILABLE
    CInfoValue GetInfo(INTERFACE_INFO_CMD nCommand) const;

    std::uint32_t GetDeviceCount() const;
    /// @throws CProducerError  GC_ERR_INVALID_INDEX
    std::string GetDeviceId(std::uint32_t nIndex) const;
    /// @throws CProducerError  GC_ERR_INVALID_ID, GC_ERR_NOT_AVAILABLE
    CInfoValue GetDeviceInfo(const std::string& strId, DEVICE_INFO_CMD nCommand) const;

    /// Asks the cameras to show themselves, and waits for them.
    /// @param nTimeoutMs  the longest wait; more than kLongestDiscovery counts as that
    /// @return whether the list is another one than before
    bool UpdateDevices(std::uint64_t nTimeoutMs);
    /// Ends the update that another thread is in; forgotten without one.
    void StopUpdate() noexcept { m_objDiscovery.Stop(); }

    /// @param strId  of a listed device, or "IP::" and an address of a camera that needn't be listed
    /// @throws CProducerError  GC_ERR_INVALID_ID, GC_ERR_RESOURCE_IN_USE, GC_ERR_INVALID_PARAMETER for an access that
    ///                         isn't known, and as CControlChannel
    void* OpenDevice(const std::string& strId, DEVICE_ACCESS_FLAGS nAccess);

    // The operations on a camera that needn't be open, by its ID as in OpenDevice. Failures as told with IpOperations.

    void ForceIp(const std::string& strId, const IP_SETTINGS& objSettings);
    void ConfigureIp(const std::string& strId, const IP_CONFIGURATION& objConfiguration);
    /// Lets the camera start its IP configuration again, which is the only reset that every camera knows.
    void RestartIp(const std::string& strId);
    DISCOVERY_REPLY AskDevice(std::uint32_t nAddress) const;

private:
    void AddInterfaceFeatures();
    void AddEnumerationFeatures();
    void AddDeviceFeatures();
    void AddForceIpFeatures();

    ADAPTER GetAdapter() const;
    std::shared_ptr<const DEVICE_LIST> GetList() const;
    std::shared_ptr<const DEVICE_ENTRY> FindListed(const std::string& strId) const;  // each is a part of its list
    std::shared_ptr<const DEVICE_ENTRY> GetSelected() const;
    void Select(std::int64_t nIndex);
    DEVICE_ENTRY Resolve(const std::string& strId) const;
    DEVICE_ACCESS_STATUS GetAccessStatus(const DEVICE_ENTRY& objEntry) const;
    void TakeResult(DISCOVERY_RESULT objResult);
    void EndUpdates() noexcept;
    void DoClose() noexcept override;

    const std::string m_strAdapter;
    const std::function<void()> m_funClosed;
    CDiscovery m_objDiscovery;
    std::stop_source m_objClosing;          // ends the attempts to open a camera or to give it an address
    CChildren<CDeviceModule> m_objDevices;  // by MAC, so that a camera is open once whatever ID it was opened by

    std::mutex m_mtxUpdate;                          // held for a whole update; taken before m_mtxState; guards:
    std::vector<DISCOVERED_DEVICE> m_vecDiscovered;  // what the list is made of

    mutable std::mutex m_mtxState;  // guards all below; a leaf
    INTERFACE_ENTRY m_objEntry;
    std::shared_ptr<const DEVICE_LIST> m_pList;
    std::size_t m_nSelected = 0;  // inside the list, or 0
    DISCOVERY_MODE m_eMode = DISCOVERY_MODE::Limited;
    std::string m_strAdvice;
    IP_SETTINGS m_objForced;  // what GevDeviceForceIP is to give to the selected camera
};

}  // namespace producer
