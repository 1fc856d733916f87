#pragma once

#include <cstdint>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/TLModuleInfo.h"
#include "TLClass/TLClassMain/GcObject.h"

class IInterface;

/// A system module: one producer's view of the machine, and the list of its interfaces.
///
/// Owned by the manager, which opens and closes it. Any thread may call.
class ITL : public CGcObject {
public:
    /// Lets the producer look for interfaces and lines the list up with what it found. Every listed interface is open
    /// afterwards. Does nothing on a closed module.
    /// @param nTimeoutMs  how long the producer may look
    /// @param pChanged    what the producer said about a change
    /// @throws CZrException  records can't be read or don't match, an interface can't be opened
    virtual void DoUpdateInterfaceList(std::uint64_t nTimeoutMs, bool* pChanged) = 0;

    virtual TL_MODULE_INFO GetTLInformation() const = 0;

    /// In the producer's order, as of the last update.
    virtual std::vector<boost::shared_ptr<IInterface>> GetInterfaceList() const = 0;
    /// Interfaces that left the list. They stay open and come back as the same objects.
    virtual std::vector<boost::shared_ptr<IInterface>> GetRemovedInterfaceList() const = 0;

    /// Null while closed.
    virtual TL_HANDLE GetHandle() const = 0;

protected:
    using CGcObject::CGcObject;
};
