#pragma once

#include "TLClass/TLClassInfo/ModuleID.h"

/// The ID of an interface by its index in the system module's list.
class CInterfaceID final : public CModuleID {
public:
    CInterfaceID(CGenTLLib* pLib, TL_HANDLE hTL, std::uint32_t nIndex);

protected:
    GC_ERROR _GetID(char* pBuffer, std::size_t* pSize) override;
};
