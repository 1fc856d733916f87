#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "GenTL/GenTL.h"
#include "producer/modules/InfoValue.h"
#include "producer/wire/DiscoveredDevice.h"

namespace producer {

/// One line of an interface's list of devices: a camera as it was at the update that listed it, and how it is called.
struct DEVICE_ENTRY {
    std::string Id;           ///< as in "Model(02-5E-17-00-AD-EA)"
    std::string DisplayName;  ///< as in "Model(192.168.42.83[02-5E-17-00-AD-EA])", and what a user must know of it
    DISCOVERED_DEVICE Device;
};

/// @param bControlledHere  whether this process controls the camera: what refused us was our own control
DEVICE_ENTRY MakeDeviceEntry(DISCOVERED_DEVICE objDevice, bool bControlledHere);

/// @param nAccessStatus  as it is now, which the entry doesn't know of a camera that is open here
/// @throws CProducerError  GC_ERR_NOT_AVAILABLE for a command that isn't known
CInfoValue GetDeviceEntryInfo(const DEVICE_ENTRY& objEntry, DEVICE_ACCESS_STATUS nAccessStatus,
                              DEVICE_INFO_CMD nCommand);

/// The list at one moment, in the order of the MACs; never changed once it is made, and so shared without a lock.
using DEVICE_LIST = std::vector<DEVICE_ENTRY>;

/// @return the entry with the ID, compared exactly; or null.
const DEVICE_ENTRY* FindDevice(const DEVICE_LIST& vecDevice, std::string_view strId);

}  // namespace producer
