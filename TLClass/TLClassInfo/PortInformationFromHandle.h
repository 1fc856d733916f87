#pragma once

#include "TLClass/TLClassInfo/PortModuleInfo.h"
#include "TLClass/TLClassInfo/ZrInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what a module's port tells about itself.
class CPortInformationFromHandle final : public CZrInformation {
public:
    CPortInformationFromHandle(CGenTLLib* pLib, PORT_HANDLE hPort);

    /// Asks the producer anew at each call.
    PORT_MODULE_INFO GetInformation();

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    CGenTLLib* m_pLib;
    PORT_HANDLE m_hPort;
};
