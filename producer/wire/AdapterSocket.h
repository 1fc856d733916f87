#pragma once

#include <optional>
#include <string>
#include <vector>

#include "producer/wire/Adapter.h"

namespace producer {

/// Asks the kernel (rtnetlink) for the adapters of the calling thread's machine. Any thread may call; nothing is kept.
/// @return every adapter that is up, in the order of the kernel's numbers, without the loopback
/// @throws CProducerError  GC_ERR_IO, when the kernel can't be asked; never for what the adapters are
std::vector<ADAPTER> ListAdapters();

/// @return the adapter of that name as it is now; nothing when there is none or it isn't up.
/// @throws CProducerError  as ListAdapters
std::optional<ADAPTER> FindAdapter(const std::string& strName);

}  // namespace producer
