#pragma once

#include <chrono>

namespace producer {

/// What waits and time-outs are measured by.
using Clock = std::chrono::steady_clock;

}  // namespace producer
