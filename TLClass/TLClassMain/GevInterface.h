#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TLClass/TLClassInfo/GevDevInfo.h"
#include "TLClass/TLClassInfo/GevIFInfo.h"
#include "TLClass/TLClassMain/Interface.h"

class CGevDevice;

/// A network adapter: knows its addresses and those of its cameras, and reaches a camera that no broadcast finds by its
/// address.
class CGevInterface : public CInterface {
public:
    using CInterface::CInterface;

    void UpdateInformation(const IF_MODULE_INFO& objRecord) override;

    GEV_IF_INFO GetGevIfInfo() const;

    /// Opens the device at an address, whether the list has it or not. A closed device of that address leaves the list.
    /// @param nIp          first octet highest
    /// @param nAccessMode  one of DEVICE_ACCESS_FLAGS_LIST
    /// @throws CInvalidAccessError  a listed device of that address is open
    /// @throws CZrException         it can't be opened; it then stays in the list until the next update
    virtual boost::shared_ptr<CGevDevice> DoOpenDeviceByIP(std::uint64_t nIp, std::uint32_t nAccessMode);

    /// Asks for the device at an address and lists it as a special one, which no update drops. It doesn't look whether
    /// the address is in the list already.
    /// @return false if the producer can't reach it
    virtual bool DoCreateSpecialDevice(const std::string& strIP);

    /// Asks for every special device anew. One that isn't reached and isn't open leaves the list.
    virtual void DoUpdateAllSpecialDevices();

protected:
    void _InitSpecialInfo(IFeatureControl* pFeatureControl) override;
    void _ClearSpecialInfo() override;
    void _UpdateDeviceSpecialInfo(IFeatureControl* pFeatureControl) override;
    void _ClearDeviceSpecialInfo() override;
    std::vector<SPECIAL_INFO*> _GetDeviceSpecialInfoList(std::size_t nCount) override;

private:
    void __SearchDeviceByIP(std::uint64_t nIp);

    GEV_IF_INFO m_objGevIfInfo;                        // guarded by m_csRecords
    std::vector<GEV_DEV_INFO> m_vecDeviceSpecialInfo;  // used by the list update alone, under its lock
    CCriticalSection m_csOpenByIP;                     // one DoOpenDeviceByIP at a time
    CCriticalSection m_csCreateSpecial;                // one DoCreateSpecialDevice at a time
    CCriticalSection m_csUpdateSpecial;                // one DoUpdateAllSpecialDevices at a time
};
