#pragma once

#include "TLClass/TLClassInfo/InterfaceInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what an open interface tells about itself.
class CInterfaceInformationFromHandle final : public CInterfaceInformation {
public:
    CInterfaceInformationFromHandle(CGenTLLib* pLib, IF_HANDLE hInterface);

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    CGenTLLib* m_pLib;
    IF_HANDLE m_hInterface;
};
