#pragma once

#include <boost/shared_ptr.hpp>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/IFModuleInfo.h"

class CGenTLLib;
class IInterface;
class ITL;

/// Chooses the class of an interface by the transport layer type in its record.
class CInterfaceFactory {
public:
    CInterfaceFactory() = delete;

    /// @return closed; the caller's, who puts it in a shared pointer at once
    [[nodiscard]] static IInterface* CreateInterface(CGenTLLib* pLib, boost::shared_ptr<ITL> pTL, TL_HANDLE hTL,
                                                     const IF_MODULE_INFO& objInformation);
};
