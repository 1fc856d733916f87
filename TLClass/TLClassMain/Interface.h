#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

#include "TLClass/TLClassInfo/DevModuleInfo.h"
#include "TLClass/TLClassInfo/SpecialInfo.h"
#include "TLClass/TLClassMain/IInterface.h"

/// The list of devices behind one interface.
///
/// Made by its transport layer's list update, which opens it at once; only the closing of the transport layer closes
/// it. An interface that vanishes is kept aside, open. One of a kind of its own derives from it and fills in what is
/// special about that kind; here the operations for that do nothing.
class CInterface : public IInterface {
public:
    /// @param pTL             the parent, empty if that has left the manager's list
    /// @param hTL             the parent's handle
    /// @param objInformation  its pointer isn't kept
    CInterface(CGenTLLib* pLib, boost::shared_ptr<ITL> pTL, TL_HANDLE hTL, IF_MODULE_INFO objInformation);

    void DoUpdateDeviceList(std::uint64_t nTimeoutMs, bool* pChanged) override;
    IF_MODULE_INFO GetInterfaceInformation() const override;
    COMMON_INTERFACE_INFO GetCommonInformation() const override;
    std::vector<boost::shared_ptr<IDevice>> GetDeviceList() const override;
    std::vector<boost::shared_ptr<IDevice>> GetRemovedDeviceList() const override;
    boost::shared_ptr<ITL> GetTL() const override { return m_pTL; }
    IF_HANDLE GetHandle() const override { return m_hInterface; }
    CGenTLLib* GetLib() const override { return m_pLib; }

    /// @throws CZrException  by the result of the producer, or because its description can't be loaded
    virtual void DoOpenInterface();
    /// Closes the listed devices. A device that left the list while open stays as it is: whoever opened it closes it.
    /// Waits for an update that is under way.
    virtual void DoCloseInterface();
    virtual bool IsOpened() const { return m_bOpened; }

    /// Takes over what an update of the parent has read.
    /// @param objRecord  its pointer is looked at, not kept
    virtual void UpdateInformation(const IF_MODULE_INFO& objRecord);

    /// Asks one device for its discovery reply. Waits for an update that is under way.
    /// @param pszKey   the device's address as text
    /// @param pBuffer  gets the reply
    /// @param pSize    in: bytes of the buffer; out: what the producer says
    /// @return false if the module is closed or the producer refuses, which it logs
    virtual bool DoUpdateSpecialDevice(const char* pszKey, void* pBuffer, std::size_t* pSize);

    /// Lets devices go that were set aside open and have been closed since. Does nothing while the module is open: its
    /// updates do that.
    void DropClosedDevices();

    /// Held while the list of devices is exchanged. A device holds it while it opens, so as not to drop out half way.
    CCriticalSection& GetDeviceListLock() { return m_csDeviceList; }

protected:
    /// Reads what is special about the module itself, while it opens.
    virtual void _InitSpecialInfo(IFeatureControl* pFeatureControl);
    virtual void _ClearSpecialInfo();
    /// Reads what is special about each device, during a list update.
    virtual void _UpdateDeviceSpecialInfo(IFeatureControl* pFeatureControl);
    virtual void _ClearDeviceSpecialInfo();
    /// One record for each device, in the order of the interface's selector.
    /// @param nCount  how many devices there are
    virtual std::vector<SPECIAL_INFO*> _GetDeviceSpecialInfoList(std::size_t nCount);

    /// Lists a device that no update has found.
    void _AddDevice(const boost::shared_ptr<IDevice>& pDevice);
    /// This interface as its parent lists it; empty if it has left that list.
    boost::shared_ptr<IInterface> _GetSelf() const;

private:
    class CTLOpenInterfaceAgency;
    class CDeviceSpecialInfoAgency;

    using DEVICE_LIST = std::vector<boost::shared_ptr<IDevice>>;

    bool __DoUpdateInProducer(std::uint64_t nTimeoutMs);
    DEVICE_LIST __GetCandidates() const;
    DEVICE_LIST __MergeDevices(const std::vector<DEV_MODULE_INFO>& vecRecord, const DEVICE_LIST& vecCandidate);
    void __ExchangeDevices(DEVICE_LIST vecNew, const DEVICE_LIST& vecCandidate);

    std::atomic<IF_HANDLE> m_hInterface = nullptr;
    const boost::shared_ptr<ITL> m_pTL;
    const TL_HANDLE m_hTL;
    IF_MODULE_INFO m_objInformation;        // guarded by m_csRecords
    COMMON_INTERFACE_INFO m_objCommonInfo;  // guarded by m_csRecords
    std::atomic<bool> m_bOpened = false;
    CCriticalSection m_csUpdate;           // held for a whole list update, and while the module closes
    DEVICE_LIST m_vecRemovedDevice;        // left the list while open
    mutable CCriticalSection m_csRemoved;  // guards m_vecRemovedDevice
    CCriticalSection m_csDeviceList;       // makes the exchange of the children one step for a device that opens
};
