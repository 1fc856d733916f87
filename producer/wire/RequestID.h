#pragma once

#include <cstdint>

namespace producer {

/// @return a request ID that no other question of this process had lately. Any thread may call.
std::uint16_t TakeRequestID() noexcept;

}  // namespace producer
