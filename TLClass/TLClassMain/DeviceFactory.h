#pragma once

#include <boost/shared_ptr.hpp>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/DevModuleInfo.h"

class CGenTLLib;
class IDevice;
class IInterface;

/// Chooses the class of a device by the transport layer type in its record.
class CDeviceFactory {
public:
    CDeviceFactory() = delete;

    /// @param objInformation  with its common record, and for GigE Vision its special one; both are copied
    /// @return closed; the caller's, who puts it in a shared pointer at once
    /// @throws CUnexpectedError        one of these records is missing
    /// @throws CInvalidParameterError  the parent is empty
    [[nodiscard]] static IDevice* CreateDevice(CGenTLLib* pLib, boost::shared_ptr<IInterface> pInterface,
                                               IF_HANDLE hInterface, DEV_MODULE_INFO objInformation);
};
