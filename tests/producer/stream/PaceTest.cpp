#include <algorithm>
#include <ostream>

#include <gtest/gtest.h>

#include "producer/stream/Pace.h"

using namespace producer;
using namespace std::chrono_literals;
using std::chrono::nanoseconds;

namespace {

struct PACE_CASE {
    const char* Name;
    std::size_t Packets;  ///< of a block
    nanoseconds First;    ///< from a packet to the next, but for the last 20 of a block
    nanoseconds Second;   ///< and there
    std::size_t Room;
    bool Known;               ///< whether it is known how many are to come
    std::size_t MostFetches;  ///< for a block
    std::size_t MostAtOnce;
};

void PrintTo(const PACE_CASE& objCase, std::ostream* pStream) {
    *pStream << objCase.Name;
}

class Pace : public testing::TestWithParam<PACE_CASE> {};

TEST_P(Pace, PacketsGatherButForTheLastOnesOfABlock) {
    const PACE_CASE& objCase = GetParam();
    constexpr nanoseconds kWakesLate = 40us;
    CPace objPace(objCase.Room);
    StreamClock::time_point objNow;
    for (int nBlock = 0; nBlock < 20; ++nBlock) {
        std::size_t nFetches = 0;
        std::size_t nMost = 0;
        StreamClock::time_point objSent = objNow += 2ms;
        for (std::size_t nTaken = 0; nTaken < objCase.Packets; ++nFetches) {
            objNow = std::max(objNow, objSent);
            std::size_t nCame = 0;
            for (; objSent <= objNow && nTaken + nCame < objCase.Packets; ++nCame) {
                objSent += nTaken + nCame < objCase.Packets - 20 ? objCase.First : objCase.Second;
            }
            nTaken += nCame;
            nMost = std::max(nMost, nCame);
            const nanoseconds objPause =
                objPace.Take(nCame, true, objCase.Known ? objCase.Packets - nTaken : 0, objNow);
            objNow += objPause.count() == 0 ? 0ns : objPause + kWakesLate;
        }
        EXPECT_LE(objNow - (objSent - objCase.Second), 0ns) << "block " << nBlock << " was waited for too long";
        EXPECT_LE(nMost, objCase.MostAtOnce);
        EXPECT_LE(nFetches, nBlock == 0 ? objCase.Packets : objCase.MostFetches);
    }
}

INSTANTIATE_TEST_SUITE_P(Streams, Pace,
                         testing::Values(PACE_CASE{"Gigabit", 900, 12us, 12us, 10'000, true, 90, 20},
                                         PACE_CASE{"TenGigabit", 900, 1200ns, 1200ns, 10'000, true, 400, 200},
                                         PACE_CASE{"GetsFaster", 900, 12us, 3us, 10'000, true, 90, 40},
                                         PACE_CASE{"Slow", 100, 5ms, 5ms, 10'000, true, 100, 1},
                                         PACE_CASE{"LittleRoom", 900, 12us, 12us, 60, true, 250, 18},
                                         PACE_CASE{"Unknown", 100, 12us, 12us, 10'000, false, 100, 1}),
                         [](const auto& objInfo) { return objInfo.param.Name; });

}  // namespace
