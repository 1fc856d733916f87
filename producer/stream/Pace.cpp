#include "producer/stream/Pace.h"

#include <algorithm>
#include <cstdint>

namespace producer {

namespace {

using std::chrono::nanoseconds;

constexpr std::size_t kMeasured = 16;              // packets that a period is taken from
constexpr std::chrono::microseconds kMargin{100};  // to wake late, and to work off what has gathered

}  // namespace

nanoseconds CPace::Take(std::size_t nPackets, bool bAll, std::size_t nExpected, StreamClock::time_point objNow) {
    m_nCounted += nPackets;
    if (!bAll) {
        return nanoseconds(0);
    }
    Measure(nExpected, objNow);
    // A quarter of what is to come: the camera may send faster from now on, and what has gathered must be worked off
    // before the block's end, or it is delivered later. A part of the room, as it isn't ours alone.
    const auto nGathered = static_cast<std::int64_t>(std::min(nExpected / 4, m_nRoom / 4));
    const nanoseconds objPause = std::min<nanoseconds>(m_objPeriod * nGathered - kMargin, kLongestPause);
    return objPause < kShortestPause ? nanoseconds(0) : objPause;
}

void CPace::Measure(std::size_t nExpected, StreamClock::time_point objNow) {
    const bool bEnough = m_nCounted >= kMeasured;
    if (m_bCounting && bEnough) {
        // It follows a stream that gets faster at once, and one that gets slower by and by.
        const nanoseconds objPeriod = (objNow - m_objFrom) / static_cast<std::int64_t>(m_nCounted);
        m_objPeriod = m_objPeriod.count() == 0 ? objPeriod : std::min(objPeriod, (m_objPeriod * 7 + objPeriod) / 8);
    }
    // Between blocks a camera pauses as it likes, which tells nothing of the packets within one.
    if (!m_bCounting || bEnough || nExpected == 0) {
        m_bCounting = nExpected != 0;
        m_objFrom = objNow;
        m_nCounted = 0;
    }
}

}  // namespace producer
