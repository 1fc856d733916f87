#pragma once

#include "TLClass/TLClassInfo/TLModuleInfo.h"

class CGenTLLib;
class ITL;

/// Chooses the class of a system module by the transport layer type in its record.
class CTLFactory {
public:
    CTLFactory() = delete;

    /// @return closed; the caller's, who puts it in a shared pointer at once
    [[nodiscard]] static ITL* CreateTL(CGenTLLib* pLib, const TL_MODULE_INFO& objInformation);
};
