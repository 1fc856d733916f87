#pragma once

#include <string>

#include "GenTL/GenTL.h"
#include "producer/modules/InfoValue.h"
#include "producer/wire/Adapter.h"

namespace producer {

/// One line of the list of interfaces: an adapter as it was at the update that listed it, and how it is called.
struct INTERFACE_ENTRY {
    std::string Id;           ///< the same after every start: the adapter's name and MAC
    std::string DisplayName;  ///< as in "eth0 (192.168.1.5)"
    ADAPTER Adapter;

    bool operator==(const INTERFACE_ENTRY&) const = default;
};

INTERFACE_ENTRY MakeInterfaceEntry(ADAPTER objAdapter);

/// @throws CProducerError  GC_ERR_NOT_AVAILABLE for a command that isn't known
CInfoValue GetInterfaceEntryInfo(const INTERFACE_ENTRY& objEntry, INTERFACE_INFO_CMD nCommand);

}  // namespace producer
