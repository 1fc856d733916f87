#include "producer/wire/RequestID.h"

#include <atomic>

namespace producer {

std::uint16_t TakeRequestID() noexcept {
    static std::atomic<std::uint16_t> s_nNext{1};
    const std::uint16_t nID = s_nNext.fetch_add(1, std::memory_order_relaxed);
    return nID == 0 ? s_nNext.fetch_add(1, std::memory_order_relaxed) : nID;
}

}  // namespace producer
