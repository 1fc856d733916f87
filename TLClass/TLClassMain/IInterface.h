#pragma once

#include <cstdint>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/CommonInterfaceInfo.h"
#include "TLClass/TLClassInfo/IFModuleInfo.h"
#include "TLClass/TLClassMain/GcObject.h"

class CGenTLLib;
class IDevice;
class ITL;

/// An interface module, for GigE Vision one network adapter, and the list of devices behind it.
///
/// Owned by its transport layer, which opens it at the first update that lists it. Any thread may call.
class IInterface : public CGcObject {
public:
    /// Lets the producer look for devices and lines the list up with what it found. Opens no device. Does nothing on a
    /// closed module.
    /// @param nTimeoutMs  how long the producer may look
    /// @param pChanged    true after every update that the producer carried out
    /// @throws CZrException  records can't be read or don't match, or the interface itself has left its own list
    virtual void DoUpdateDeviceList(std::uint64_t nTimeoutMs, bool* pChanged) = 0;

    virtual IF_MODULE_INFO GetInterfaceInformation() const = 0;
    virtual COMMON_INTERFACE_INFO GetCommonInformation() const = 0;

    /// In the producer's order, as of the last update; devices that were reached by their address stand behind.
    virtual std::vector<boost::shared_ptr<IDevice>> GetDeviceList() const = 0;
    /// Devices that left the list while they were open. They come back as the same objects.
    virtual std::vector<boost::shared_ptr<IDevice>> GetRemovedDeviceList() const = 0;

    virtual boost::shared_ptr<ITL> GetTL() const = 0;
    /// Null while closed.
    virtual IF_HANDLE GetHandle() const = 0;
    virtual CGenTLLib* GetLib() const = 0;

protected:
    using CGcObject::CGcObject;
};
