#pragma once

#include <chrono>
#include <cstddef>

#include "producer/stream/Block.h"

namespace producer {

/// How long packets are left to gather in the kernel before they are fetched together.
///
/// A thread that is woken for each packet spends more on waking than on the packet. While many packets of a block are
/// still to come, a pause costs nothing: it ends well before the block does, and the block's last packets are waited
/// for one by one, so that the block isn't delivered later.
///
/// Owned by a receiver and used on its thread alone.
class CPace {
public:
    static constexpr std::chrono::microseconds kLongestPause{200};
    static constexpr std::chrono::microseconds kShortestPause{20};  ///< a shorter one costs more than it saves

    /// @param nRoom  packets that the kernel has room for
    explicit CPace(std::size_t nRoom) : m_nRoom(nRoom) {}

    /// Notes what was fetched.
    /// @param nPackets   that came
    /// @param bAll       whether they were all that was there
    /// @param nExpected  packets still to come of the block under way; 0 when that isn't known
    /// @return how long to wait before the next are fetched; 0 when they are to be waited for one by one
    std::chrono::nanoseconds Take(std::size_t nPackets, bool bAll, std::size_t nExpected,
                                  StreamClock::time_point objNow);

private:
    void Measure(std::size_t nExpected, StreamClock::time_point objNow);

    const std::size_t m_nRoom;
    StreamClock::time_point m_objFrom;        // since when packets are counted
    std::size_t m_nCounted = 0;               // since then
    bool m_bCounting = false;                 // what is counted belongs to one block
    std::chrono::nanoseconds m_objPeriod{0};  // from one packet to the next; 0 as long as it isn't known
};

}  // namespace producer
