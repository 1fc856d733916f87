#pragma once

#include <cstdint>

#include "producer/wire/Adapter.h"
#include "producer/wire/DiscoveredDevice.h"
#include "producer/wire/IpOperations.h"

namespace producer {

/// Takes a camera's own answer to a question by its address for what an update would have listed.
/// @param nAddress  that was asked, whatever the camera claims as its own
/// @throws CProducerError  GC_ERR_IO for an answer that no camera gives
DISCOVERED_DEVICE ReadDeviceReply(const DISCOVERY_REPLY& arrReply, std::uint32_t nAddress, const ADAPTER& objAdapter);

}  // namespace producer
