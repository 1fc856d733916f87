#pragma once

#include "TLClass/TLClassInfo/ModuleID.h"

/// The ID of a device by its index in the interface's list.
class CDeviceID final : public CModuleID {
public:
    CDeviceID(CGenTLLib* pLib, IF_HANDLE hInterface, std::uint32_t nIndex);

protected:
    GC_ERROR _GetID(char* pBuffer, std::size_t* pSize) override;
};
