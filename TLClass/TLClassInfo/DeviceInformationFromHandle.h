#pragma once

#include "TLClass/TLClassInfo/DeviceInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what an open device tells about itself.
class CDeviceInformationFromHandle final : public CDeviceInformation {
public:
    CDeviceInformationFromHandle(CGenTLLib* pLib, DEV_HANDLE hDevice);

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    CGenTLLib* m_pLib;
    DEV_HANDLE m_hDevice;
};
