#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "GenTL/GenTL.h"
#include "producer/modules/InfoValue.h"

namespace producer {

/// What EventGetData hands out for EVENT_REMOTE_DEVICE: this header, then the event's data as the camera sent them.
struct REMOTE_EVENT_HEADER {
    std::uint64_t EventId = 0;
};

/// Bytes of the data behind the header: what one packet of the message channel can carry.
inline constexpr std::size_t kRemoteEventValueMax = 540;
inline constexpr std::size_t kRemoteEventSizeMax = sizeof(REMOTE_EVENT_HEADER) + kRemoteEventValueMax;

/// Bytes of the largest value that GetEventDataInfo answers for events of the type.
std::size_t EventValueSizeMax(EVENT_TYPE nType);

/// Takes what EventGetData handed out apart; the bytes come back from the consumer, and so are checked.
/// @throws CProducerError  GC_ERR_INVALID_PARAMETER for what is no event of the type, GC_ERR_NOT_AVAILABLE for what it
///                         doesn't carry
CInfoValue GetEventDataInfo(EVENT_TYPE nType, std::span<const std::byte> spanData, EVENT_DATA_INFO_CMD nCommand);

}  // namespace producer
