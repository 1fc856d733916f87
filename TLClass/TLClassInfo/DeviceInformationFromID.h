#pragma once

#include <string>

#include "TLClass/TLClassInfo/DeviceInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what an interface tells about one of its devices, which need not be open.
class CDeviceInformationFromID final : public CDeviceInformation {
public:
    CDeviceInformationFromID(IF_HANDLE hInterface, std::string strID, CGenTLLib* pLib);

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    IF_HANDLE m_hInterface;
    std::string m_strID;
    CGenTLLib* m_pLib;
};
