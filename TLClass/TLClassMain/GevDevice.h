#pragma once

#include "TLClass/TLClassInfo/GevDevInfo.h"
#include "TLClass/TLClassMain/Device.h"

/// A GigE Vision camera: knows its addresses.
class CGevDevice : public CDevice {
public:
    /// As CDevice's.
    CGevDevice(CGenTLLib* pLib, boost::shared_ptr<IInterface> pInterface, IF_HANDLE hInterface,
               DEV_MODULE_INFO objInformation, COMMON_DEVICE_INFO objCommonInfo, GEV_DEV_INFO objGevDevInfo);

    void UpdateInformation(const DEV_MODULE_INFO& objRecord) override;

    GEV_DEV_INFO GetGevDevInfo() const;
    /// @param nIp  first octet highest
    void SetGevIP(std::uint64_t nIp);

private:
    GEV_DEV_INFO m_objGevDevInfo;  // guarded by m_csRecords
};
