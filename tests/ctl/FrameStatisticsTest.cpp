#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "ctl/FrameStatistics.h"

namespace {

using std::chrono::milliseconds;

TEST(FrameStatistics, FindsLostFramesByTheGapsInTheirIDs) {
    const struct {
        std::vector<std::optional<std::uint64_t>> vecID;
        std::uint64_t nLost;
    } arrCase[] = {
        {{1, 2, 3}, 0},
        {{1, 2, 5, 6, 8}, 3},
        {{65534, 65535, 1, 2}, 0},  // 16 bits, which skip 0
        {{65534, 2}, 2},            // 65535 and 1
        {{65535, 65536}, 0},        // 64 bits
        {{500, 1, 2}, 0},           // the camera counts anew
        {{1, std::nullopt, 3}, 1},
        {{0xFFFFFFFFFFFFFFFF, 1}, 0},
    };
    for (const auto& objCase : arrCase) {
        CFrameStatistics objStatistics;
        for (const auto& nID : objCase.vecID) {
            objStatistics.Add(nID, 1, false, {});
        }
        EXPECT_EQ(objStatistics.GetLost(), objCase.nLost);
    }
}

TEST(FrameStatistics, CountsTheRateBetweenCompleteFrames) {
    CFrameStatistics objStatistics;
    EXPECT_EQ(objStatistics.GetText(), "0.00 frames/s, 0.00 MB/s, 0 lost, 0 incomplete");
    const CFrameStatistics::TIME nStart;
    objStatistics.Add(1, 1'000'000, true, nStart - milliseconds(100));
    objStatistics.Add(2, 1'000'000, false, nStart);
    objStatistics.Add(3, 1'000'000, false, nStart + milliseconds(100));
    objStatistics.Add(4, 500'000, true, nStart + milliseconds(150));
    objStatistics.Add(7, 2'000'000, false, nStart + milliseconds(200));
    objStatistics.Add(8, 500'000, true, nStart + milliseconds(900));
    EXPECT_EQ(objStatistics.GetText(), "10.00 frames/s, 15.00 MB/s, 2 lost, 3 incomplete");
}

}  // namespace
