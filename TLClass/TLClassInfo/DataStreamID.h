#pragma once

#include "TLClass/TLClassInfo/ModuleID.h"

/// The ID of a data stream by its index on the device.
class CDataStreamID final : public CModuleID {
public:
    CDataStreamID(CGenTLLib* pLib, DEV_HANDLE hDevice, std::uint32_t nIndex);

protected:
    GC_ERROR _GetID(char* pBuffer, std::size_t* pSize) override;
};
