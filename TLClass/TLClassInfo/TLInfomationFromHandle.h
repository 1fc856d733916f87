#pragma once

#include "TLClass/TLClassInfo/TLInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what an open system module tells about itself.
class CTLInfomationFromHandle final : public CTLInformation {
public:
    CTLInfomationFromHandle(CGenTLLib* pLib, TL_HANDLE hTL);

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    CGenTLLib* m_pLib;
    TL_HANDLE m_hTL;
};
