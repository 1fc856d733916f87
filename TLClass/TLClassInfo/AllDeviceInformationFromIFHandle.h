#pragma once

#include <vector>

#include "TLClass/TLClassInfo/DevModuleInfo.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what a producer tells about all devices of one interface.
///
/// Made on the stack for one walk; owns neither the handle nor the library.
class CAllDeviceInformationFromIFHandle {
public:
    CAllDeviceInformationFromIFHandle(IF_HANDLE hInterface, CGenTLLib* pLib) : m_hInterface(hInterface), m_pLib(pLib) {}

    /// One record for each, in the producer's order.
    /// @throws CZrException  by the result of counting; CUnexpectedError for more than kMaxChildCount
    std::vector<DEV_MODULE_INFO> GetAllDeviceInfomation();

private:
    IF_HANDLE m_hInterface;
    CGenTLLib* m_pLib;
};
