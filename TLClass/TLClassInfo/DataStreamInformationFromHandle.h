#pragma once

#include "TLClass/TLClassInfo/DSModuleInfo.h"
#include "TLClass/TLClassInfo/ZrInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what an open data stream tells about itself.
class CDataStreamInformationFromHandle final : public CZrInformation {
public:
    CDataStreamInformationFromHandle(CGenTLLib* pLib, DS_HANDLE hDataStream);

    /// Asks the producer anew at each call.
    DS_MODULE_INFO GetInformation();

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    CGenTLLib* m_pLib;
    DS_HANDLE m_hDataStream;
};
