#pragma once

#include <vector>

#include "TLClass/TLClassInfo/IFModuleInfo.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what a producer tells about all interfaces of one system module.
///
/// Made on the stack for one walk; owns neither the handle nor the library.
class CAllInterfaceInformationFromTLHandle {
public:
    CAllInterfaceInformationFromTLHandle(TL_HANDLE hTL, CGenTLLib* pLib) : m_hTL(hTL), m_pLib(pLib) {}

    /// One record for each, in the producer's order.
    /// @throws CZrException  by the result of counting; CUnexpectedError for more than kMaxChildCount
    std::vector<IF_MODULE_INFO> GetAllInterfaceInformation();

private:
    TL_HANDLE m_hTL;
    CGenTLLib* m_pLib;
};
