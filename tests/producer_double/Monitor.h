#pragma once

#include <condition_variable>
#include <mutex>

namespace ProducerDouble {

using LOCK = std::unique_lock<std::mutex>;

/// The one lock of the double and the one condition that every wait in it waits for.
///
/// It guards the world, the consumer's view, the rules and the records. Nothing blocks while holding it: a wait gives
/// it up, a delay and a test's own hook run without it. Operations of the inner classes expect it held, the operations
/// of the control interfaces take it.
struct MONITOR {
    mutable std::mutex cs;
    std::condition_variable changed;

    LOCK Enter() const { return LOCK(cs); }
};

}  // namespace ProducerDouble
