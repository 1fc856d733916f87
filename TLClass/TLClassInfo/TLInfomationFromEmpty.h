#pragma once

#include "TLClass/TLClassInfo/TLInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what a producer tells about itself before any system module is open.
class CTLInfomationFromEmpty final : public CTLInformation {
public:
    explicit CTLInfomationFromEmpty(CGenTLLib* pLib);

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    CGenTLLib* m_pLib;
};
