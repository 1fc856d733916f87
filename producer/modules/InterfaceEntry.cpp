#include "producer/modules/InterfaceEntry.h"

#include <utility>

#include "producer/ProducerError.h"
#include "support/Address.h"

namespace producer {

INTERFACE_ENTRY MakeInterfaceEntry(ADAPTER objAdapter) {
    INTERFACE_ENTRY objEntry;
    objEntry.Id = objAdapter.Name + '(' + MACToString(objAdapter.Mac) + ')';
    const std::string strAddress =
        objAdapter.Addresses.empty() ? "no IPv4 address" : IPToString(objAdapter.GetDefaultAddress().Address);
    objEntry.DisplayName = objAdapter.Name + " (" + strAddress + ')';
    objEntry.Adapter = std::move(objAdapter);
    return objEntry;
}

CInfoValue GetInterfaceEntryInfo(const INTERFACE_ENTRY& objEntry, INTERFACE_INFO_CMD nCommand) {
    switch (nCommand) {
        case INTERFACE_INFO_ID:
            return CInfoValue::Text(objEntry.Id);
        case INTERFACE_INFO_DISPLAYNAME:
            return CInfoValue::Text(objEntry.DisplayName);
        case INTERFACE_INFO_TLTYPE:
            return CInfoValue::Text("GEV");
        default:
            throw CProducerError(GC_ERR_NOT_AVAILABLE, "an interface has no info command " + std::to_string(nCommand));
    }
}

}  // namespace producer
