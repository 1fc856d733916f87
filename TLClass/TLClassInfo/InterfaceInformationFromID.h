#pragma once

#include <string>

#include "TLClass/TLClassInfo/InterfaceInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what a system module tells about one of its interfaces, which need not be open.
class CInterfaceInformationFromID final : public CInterfaceInformation {
public:
    CInterfaceInformationFromID(TL_HANDLE hTL, std::string strID, CGenTLLib* pLib);

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    TL_HANDLE m_hTL;
    std::string m_strID;
    CGenTLLib* m_pLib;
};
