#include <algorithm>
#include <chrono>
#include <ostream>
#include <random>
#include <string>
#include <tuple>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gev/BigEndian.h"
#include "gev/GvspHeader.h"
#include "gev/GvspLeader.h"
#include "gev/GvspTrailer.h"
#include "producer/stream/Reassembly.h"
#include "tests/producer/stream/SimulatedStream.h"

using namespace producer;
using namespace std::chrono_literals;

namespace {

constexpr std::uint64_t kLast16 = 0xFFFF;

bool LosesNothing(std::size_t, std::size_t) {
    return false;
}

/// How many frames came, how many of them complete and exact, in the order of their IDs.
void ExpectAllExact(const CSimulatedStream& objStream, std::size_t nFrames) {
    ASSERT_EQ(objStream.m_vecFrame.size(), nFrames);
    std::uint64_t nID = objStream.m_vecFrame.front().BlockID;
    for (const CSimulatedStream::FRAME& objFrame : objStream.m_vecFrame) {
        EXPECT_TRUE(objFrame.IsExact && !objFrame.Block.IsIncomplete) << "block " << objFrame.BlockID;
        EXPECT_EQ(objFrame.BlockID, nID);
        nID = nID == kLast16 ? 1 : nID + 1;
    }
}

struct LOSS_CASE {
    std::string Name;
    CSimulatedStream::CAMERA Camera;
    std::function<bool(std::size_t, std::size_t)> Loses;
};

void PrintTo(const LOSS_CASE& objCase, std::ostream* pStream) {
    *pStream << objCase.Name;
}

std::function<bool(std::size_t, std::size_t)> LosesAtRate(double dRate) {
    return [objRandom = std::mt19937(7), objLoss = std::bernoulli_distribution(dRate)](
               std::size_t, std::size_t) mutable { return objLoss(objRandom); };
}

/// The packets from a position on, of every third frame, the first time.
std::function<bool(std::size_t, std::size_t)> LosesBurst(std::size_t nFrom, std::size_t nTo) {
    return [=](std::size_t nFrame, std::size_t i) { return nFrame % 3 == 1 && i >= nFrom && i < nTo && nFrame < 30; };
}

std::vector<LOSS_CASE> LossCases() {
    CSimulatedStream::CAMERA objShort;
    CSimulatedStream::CAMERA objWide;
    objWide.ExtendedIDs = true;
    objWide.FirstBlockID = 0x1'0000'0000;
    CSimulatedStream::CAMERA objWrap;
    objWrap.FirstBlockID = kLast16 - 4;
    CSimulatedStream::CAMERA objChunks;
    objChunks.ChunkBytes = 300;
    objChunks.PacketSize = 9000;
    const std::size_t nPackets = CSimulatedStream(objShort, {}).GetPacketCount();
    return {{"Nothing", objWide, LosesNothing},
            {"NothingAtTheWrap", objWrap, LosesNothing},
            {"NothingWithChunks", objChunks, LosesNothing},
            {"OneInAThousand", objShort, LosesAtRate(0.001)},
            {"OneInAHundred", objWide, LosesAtRate(0.01)},
            {"FiveInAHundredAtTheWrap", objWrap, LosesAtRate(0.05)},
            {"FiveInAHundredWithChunks", objChunks, LosesAtRate(0.05)},
            {"Bursts", objShort, LosesBurst(20, 52)},
            {"Leaders", objShort, LosesBurst(0, 1)},
            {"Trailers", objChunks, LosesBurst(36, 37)},
            {"EndsOfBlocks", objShort, LosesBurst(nPackets - 32, nPackets)},
            {"WholeBlocks", objShort, LosesBurst(0, nPackets)}};
}

class ReassemblyOfLossyStream : public testing::TestWithParam<LOSS_CASE> {};

TEST_P(ReassemblyOfLossyStream, EveryFrameIsCompleteWithResend) {
    CSimulatedStream objStream(GetParam().Camera, {});
    objStream.Send(30, GetParam().Loses);
    ExpectAllExact(objStream, 30);
    const STREAM_STATISTICS& objCounts = objStream.Reassembly().GetStatistics();
    EXPECT_EQ(objCounts.PacketsMissing + objCounts.BlocksLost + objCounts.BlocksUnderrun, 0U);
    EXPECT_EQ(objStream.m_nRequests == 0, objStream.m_nLostPackets == 0);
    EXPECT_LE(objStream.m_nRequests, objStream.m_nLostPackets + objStream.m_nLostPackets / 5 + 1);
}

TEST_P(ReassemblyOfLossyStream, EveryGapIsCountedWithoutResend) {
    CSimulatedStream objStream(GetParam().Camera, {.Resend = false});
    objStream.Send(30, GetParam().Loses);
    const STREAM_STATISTICS& objCounts = objStream.Reassembly().GetStatistics();
    EXPECT_EQ(objCounts.PacketsMissing, objStream.m_nLostPackets);
    EXPECT_EQ(objStream.m_nRequests, 0U);
    EXPECT_EQ(objCounts.BlocksDelivered + objCounts.BlocksLost, 30U);
    for (const CSimulatedStream::FRAME& objFrame : objStream.m_vecFrame) {
        EXPECT_EQ(objFrame.Block.IsIncomplete, objFrame.Block.PacketsMissing != 0);
        EXPECT_TRUE(objFrame.IsExact || objFrame.Block.IsIncomplete) << "block " << objFrame.BlockID;
    }
}

INSTANTIATE_TEST_SUITE_P(Losses, ReassemblyOfLossyStream, testing::ValuesIn(LossCases()),
                         [](const auto& objInfo) { return objInfo.param.Name; });

TEST(Reassembly, ReorderedPacketsAreNotAskedFor) {
    CSimulatedStream objStream({}, {});
    std::vector<CSimulatedStream::Packet> vecPacket;
    for (std::uint64_t nID = 1; nID <= 20; ++nID) {
        std::ranges::move(objStream.MakeFrame(nID), std::back_inserter(vecPacket));
    }
    std::mt19937 objRandom(3);
    for (std::size_t i = 0; i + 30 < vecPacket.size(); i += 31) {
        std::shuffle(vecPacket.begin() + static_cast<std::ptrdiff_t>(i),
                     vecPacket.begin() + static_cast<std::ptrdiff_t>(i + 31), objRandom);
    }
    for (const auto& arrPacket : vecPacket) {
        objStream.Deliver(arrPacket);
        objStream.Deliver(arrPacket);  // and each twice
    }
    EXPECT_EQ(objStream.m_nRequests, 0U);
    EXPECT_GE(objStream.Reassembly().GetStatistics().PacketsDuplicate, vecPacket.size() - 20);
    ExpectAllExact(objStream, 20);
}

TEST(Reassembly, PacketsThatWaitedWhileTheReceiverWasHeldUpAreNeitherAskedForNorGivenUp) {
    CSimulatedStream objStream({}, {});
    const auto vecPacket = objStream.MakeFrame(1);
    for (std::size_t i = 0; i < 100; ++i) {
        if (i != 90) {
            objStream.Deliver(vecPacket[i]);
        }
    }
    const auto objSeen = objStream.m_objNow;
    objStream.m_objNow += 2s;
    objStream.Reassembly().Service(objStream.m_objNow, objSeen);
    objStream.Deliver(vecPacket[90]);
    std::for_each(vecPacket.begin() + 100, vecPacket.end(),
                  [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
    ExpectAllExact(objStream, 1);
    EXPECT_EQ(objStream.m_nRequests, 0U);
}

TEST(Reassembly, CameraThatStopsInAFrameGetsAFewRequestsAndTheFrameIsDelivered) {
    CSimulatedStream objStream({.AnswersResends = false}, {});
    const auto vecPacket = objStream.MakeFrame(1);
    for (std::size_t i = 0; i < 100; ++i) {
        objStream.Deliver(vecPacket[i]);
    }
    objStream.Settle();
    ASSERT_EQ(objStream.m_vecFrame.size(), 1U);
    EXPECT_TRUE(objStream.m_vecFrame[0].Block.IsIncomplete);
    EXPECT_EQ(objStream.m_vecFrame[0].Block.PacketsMissing, vecPacket.size() - 100);
    EXPECT_LE(objStream.m_nRequests, 6U);
    EXPECT_LE(objStream.m_objNow.time_since_epoch(), 1100ms);
}

TEST(Reassembly, PacketsThatTheCameraHasNoMoreAreNotWaitedFor) {
    for (const auto& [nStatus, nToldOf] : {std::pair{gev::EGvcpStatus::PacketUnavailable, 50},
                                           {gev::EGvcpStatus::PacketAndPreviousRemoved, 50},
                                           {gev::EGvcpStatus::PacketAndPreviousRemoved, 60}}) {
        CSimulatedStream objStream({.AnswersResends = false}, {});
        const auto vecPacket = objStream.MakeFrame(1);
        for (std::size_t i = 0; i < vecPacket.size(); ++i) {
            if (i != 50) {
                objStream.Deliver(vecPacket[i]);
            }
        }
        auto arrGone = vecPacket[static_cast<std::size_t>(nToldOf)];
        gev::Put16(arrGone, 0, static_cast<std::uint16_t>(nStatus));
        arrGone.resize(gev::kGvspHeaderSize);
        objStream.Deliver(arrGone);
        objStream.Settle();
        EXPECT_EQ(objStream.m_nRequests, 1U) << nToldOf << ": none after it said so";
        ASSERT_EQ(objStream.m_vecFrame.size(), 1U);
        EXPECT_EQ(objStream.m_vecFrame[0].Block.PacketsMissing, 1U);
    }
}

TEST(Reassembly, BlockOfEndlessLengthWithMoreGapsThanAreKeptCostsNoMoreThanItsPackets) {
    CSimulatedStream objStream({.SizeX = 1280, .SizeY = 960, .PacketSize = 576, .ExtendedIDs = true}, {});
    auto vecPacket = objStream.MakeFrame(1);
    gev::Put32(vecPacket[0], gev::kGvspExtendedHeaderSize + 20, 0xFFFF'FFFF);  // lines
    for (std::size_t i = 0; i + 1 < vecPacket.size(); i += i < 2 * CBlock::kMostGaps ? 2 : 1) {
        objStream.Deliver(vecPacket[i]);
    }
    objStream.Deliver(objStream.MakeFrame(2)[0]);  // so that the first is looked at to its end
    const auto objStart = std::chrono::steady_clock::now();
    objStream.Settle();
    EXPECT_LT(std::chrono::steady_clock::now() - objStart, 5s);
}

TEST(Reassembly, NumberingThatBeginsAnewIsFollowed) {
    CSimulatedStream objStream({}, {});
    for (const std::uint64_t nFirst : {std::uint64_t{1}, std::uint64_t{30'000}, std::uint64_t{2}}) {
        objStream.m_nNextID = nFirst;
        objStream.Send(5, LosesNothing);
    }
    // Acquisition was stopped and started on the camera's side: the same numbers, other moments.
    for (const std::uint64_t nID : {2, 3}) {
        for (auto arrPacket : objStream.MakeFrame(nID)) {
            if (gev::Get32(arrPacket, 4) == 0x0100'0000) {
                gev::Put64(arrPacket, gev::kGvspHeaderSize + 4, 77);
            }
            objStream.Deliver(arrPacket);
        }
    }
    EXPECT_EQ(objStream.m_vecFrame.size(), 17U);
    EXPECT_TRUE(std::ranges::all_of(objStream.m_vecFrame, &CSimulatedStream::FRAME::IsExact));
    EXPECT_EQ(objStream.Reassembly().GetStatistics().BlocksLost, 0U);
    // And in the middle of a block, which isn't filled up with the other image.
    const auto vecBroken = objStream.MakeFrame(4);
    std::for_each_n(vecBroken.begin(), vecBroken.size() / 2,
                    [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
    auto vecPacket = objStream.MakeFrame(4);
    gev::Put64(vecPacket[0], gev::kGvspHeaderSize + 4, 77);
    std::ranges::for_each(vecPacket, [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
    ASSERT_EQ(objStream.m_vecFrame.size(), 19U);
    EXPECT_TRUE(objStream.m_vecFrame[17].Block.IsIncomplete);
    EXPECT_TRUE(!objStream.m_vecFrame[18].Block.IsIncomplete && objStream.m_vecFrame[18].IsExact);
}

TEST(Reassembly, NumberingThatBeginsAnewWithoutAClockIsFollowedFromTheSecondFrame) {
    CSimulatedStream objStream({}, {});
    for (int i = 0; i < 2; ++i) {
        for (std::uint64_t nID = 1; nID <= 5; ++nID) {
            auto vecPacket = objStream.MakeFrame(nID);
            gev::Put64(vecPacket.front(), gev::kGvspHeaderSize + 4, 0);
            std::ranges::for_each(vecPacket, [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
        }
    }
    EXPECT_EQ(objStream.m_vecFrame.size(), 9U);
    EXPECT_TRUE(std::ranges::all_of(objStream.m_vecFrame, &CSimulatedStream::FRAME::IsExact));
}

TEST(Reassembly, CameraThatAnswersNoRequestHoldsFewFramesBack) {
    CSimulatedStream objStream({.AnswersResends = false}, {}, 8);
    objStream.Send(400, LosesAtRate(0.002));
    const STREAM_STATISTICS& objCounts = objStream.Reassembly().GetStatistics();
    EXPECT_EQ(objCounts.BlocksDelivered + objCounts.BlocksUnderrun + objCounts.BlocksLost, 400U);
    EXPECT_LT(objCounts.BlocksUnderrun, 40U);
    EXPECT_LT(objStream.m_nRequests, 3 * objStream.m_nLostPackets);
}

TEST(Reassembly, BlockOfWhichNothingCameGivesWayWhenMemoryRunsOut) {
    CSimulatedStream objStream({.AnswersResends = false}, {}, 3);
    objStream.m_bKeepsFrames = true;
    for (const std::uint64_t nID : {1, 3, 4, 5}) {
        std::ranges::for_each(objStream.MakeFrame(nID), [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
    }
    EXPECT_EQ(objStream.m_vecFrame.size(), 3U);
}

TEST(Reassembly, BlockOfWhichNothingComesAnyMoreTakesNoMemory) {
    CSimulatedStream objStream({.AnswersResends = false}, {});
    for (const std::uint64_t nID : {1, 3}) {
        std::ranges::for_each(objStream.MakeFrame(nID), [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
    }
    auto arrGone = objStream.MakeFrame(2)[0];
    gev::Put16(arrGone, 0, static_cast<std::uint16_t>(gev::EGvcpStatus::PacketRemoved));
    arrGone.resize(gev::kGvspHeaderSize);
    objStream.Deliver(arrGone);
    EXPECT_EQ(objStream.m_vecFrame.size(), 2U);
    EXPECT_EQ(objStream.Reassembly().GetStatistics().BlocksLost, 1U);
}

TEST(Reassembly, MoreHolesThanRequestsAtATimeAreAllAskedFor) {
    CSimulatedStream objStream({.SizeX = 2560, .SizeY = 1920, .PacketSize = 576, .AnswersResends = false}, {});
    const auto vecPacket = objStream.MakeFrame(1);
    std::size_t nHoles = 0;
    for (std::size_t i = 0; i < vecPacket.size(); ++i) {
        if (i % 8 == 7) {
            ++nHoles;
        } else {
            objStream.Reassembly().TakePacket(vecPacket[i], objStream.m_objNow);
        }
    }
    ASSERT_GT(nHoles, 2 * CBlock::kMostGaps);
    objStream.m_objNow += 6ms;
    for (std::size_t i = 0; i < nHoles / CReassembly::kMostRequests + 1; ++i) {
        objStream.Reassembly().Service(objStream.m_objNow, objStream.m_objNow);
    }
    EXPECT_EQ(objStream.m_nRequests, nHoles);
}

TEST(Reassembly, AnswersThatComeLongAfterTheirBlockMoveNothing) {
    CSimulatedStream objStream({}, {});
    objStream.m_nNextID = 100;
    objStream.Send(3, LosesNothing);
    for (const std::uint64_t nID : {3, 5000, 40'000}) {
        auto vecPacket = objStream.MakeFrame(nID, true);
        objStream.Deliver(vecPacket.front());
        gev::Put16(vecPacket[1], 0, static_cast<std::uint16_t>(gev::EGvcpStatus::PacketAndPreviousRemoved));
        objStream.Deliver(vecPacket[1]);
    }
    objStream.Send(3, LosesNothing);
    ExpectAllExact(objStream, 6);
    EXPECT_EQ(objStream.Reassembly().GetStatistics().BlocksLost, 0U);
}

TEST(Reassembly, PacketSizeThatChangesOnTheWayIsLearnt) {
    for (const auto& [nBefore, nAfter] : {std::pair{9000U, 1500U}, std::pair{1500U, 9000U}}) {
        CSimulatedStream::CAMERA objCamera;
        objCamera.PacketSize = nBefore;
        CSimulatedStream objStream(objCamera, {});
        objStream.Send(3, LosesNothing);
        objCamera.PacketSize = nAfter;
        const CSimulatedStream objOther(objCamera, {});
        for (std::uint64_t nID = 4; nID < 8; ++nID) {
            for (const auto& arrPacket : objOther.MakeFrame(nID)) {
                objStream.Deliver(arrPacket);
            }
        }
        objStream.Settle();
        ASSERT_EQ(objStream.m_vecFrame.size(), 7U);
        EXPECT_TRUE(objStream.m_vecFrame[3].Block.IsIncomplete);
        EXPECT_TRUE(objStream.m_vecFrame[6].IsExact && !objStream.m_vecFrame[6].Block.IsIncomplete) << nAfter;
    }
}

TEST(Reassembly, FirstAndLastPacketOfAWrongSizeAreAskedForAgain) {
    const std::size_t nLast = CSimulatedStream({}, {}).GetPacketCount() - 2;
    for (const auto& [nPacketID, nWrong] : {std::pair<std::size_t, std::size_t>{1, 700}, {1, 1600}, {nLast, 300}}) {
        CSimulatedStream objStream({}, {});
        auto vecPacket = objStream.MakeFrame(1);
        vecPacket[nPacketID].resize(nWrong);
        std::ranges::for_each(vecPacket, [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
        objStream.m_objNow += 6ms;
        objStream.Reassembly().Service(objStream.m_objNow, objStream.m_objNow);
        EXPECT_EQ(objStream.m_nRequests, 1U);
        objStream.Deliver(objStream.MakeFrame(1, true)[nPacketID]);
        ExpectAllExact(objStream, 1);
    }
}

TEST(Reassembly, ImageLowerThanItsLeaderTellsIsCompleteWithoutResends) {
    for (const std::uint32_t nLines : {479U, 400U, 1U}) {
        CSimulatedStream objStream({}, {.Resend = false});
        std::ranges::for_each(objStream.MakeFrame(1, false, nLines),
                              [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
        ASSERT_EQ(objStream.m_vecFrame.size(), 1U) << nLines;
        EXPECT_FALSE(objStream.m_vecFrame[0].Block.IsIncomplete) << nLines;
        EXPECT_EQ(objStream.m_vecFrame[0].Block.Filled, 640 * nLines);
    }
}

TEST(Reassembly, LastPacketsThatWereCutOneAfterTheOtherAreAskedForAgain) {
    CSimulatedStream objStream({}, {});
    const auto vecPacket = objStream.MakeFrame(1);
    for (std::size_t i = 0; i < vecPacket.size(); ++i) {
        auto arrPacket = vecPacket[i];
        arrPacket.resize(i + 4 >= vecPacket.size() && i + 2 < vecPacket.size() ? 500 : arrPacket.size());
        objStream.Deliver(arrPacket);
    }
    for (std::size_t i = vecPacket.size() - 4; i < vecPacket.size() - 2; ++i) {
        objStream.Deliver(objStream.MakeFrame(1, true)[i]);
    }
    ExpectAllExact(objStream, 1);
}

TEST(Reassembly, PacketsThatComeAfterTheCameraCalledThemGoneAreTaken) {
    CSimulatedStream objStream({.AnswersResends = false}, {});
    const auto vecPacket = objStream.MakeFrame(1);
    const std::vector<std::size_t> vecGone{0, 50, vecPacket.size() - 1};
    for (std::size_t i = 1; i + 1 < vecPacket.size(); ++i) {
        if (i != 50 && i != 51) {
            objStream.Deliver(vecPacket[i]);
        }
    }
    for (const std::size_t nID : vecGone) {
        auto arrGone = vecPacket[nID];
        gev::Put16(arrGone, 0, static_cast<std::uint16_t>(gev::EGvcpStatus::PacketUnavailable));
        arrGone.resize(gev::kGvspHeaderSize);
        objStream.Deliver(arrGone);
    }
    std::ranges::for_each(vecGone, [&](std::size_t nID) { objStream.Deliver(vecPacket[nID]); });
    objStream.Deliver(vecPacket[51]);
    ExpectAllExact(objStream, 1);
}

TEST(Reassembly, ChunkLengthThatCountsTheImageTooIsUnderstood) {
    constexpr std::uint32_t kWhole = 640 * 480 + 300;
    for (const auto& [nType, nTold] : {std::pair<std::uint16_t, std::uint32_t>{0x0005, kWhole}, {0x4001, kWhole}}) {
        CSimulatedStream objStream({.ChunkBytes = 300}, {});
        auto vecPacket = objStream.MakeFrame(1);
        gev::GVSP_TRAILER objTrailer{gev::EPayloadType{nType}, 480, nTold, 1};
        gev::Put16(vecPacket.front(), gev::kGvspHeaderSize + 2, nType);
        vecPacket.back().resize(100);
        gev::EncodeTrailer(std::span(vecPacket.back()).subspan(gev::kGvspHeaderSize), objTrailer);
        std::ranges::for_each(vecPacket, [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
        ExpectAllExact(objStream, 1);
        EXPECT_EQ(objStream.m_vecFrame[0].Block.DataSize, kWhole);
    }
}

TEST(Leader, PackedLinesWithoutPaddingMayEndInTheMiddleOfAByte) {
    gev::GVSP_LEADER objLeader;
    objLeader.PixelFormat = gev::EPixelFormat::Mono12Packed;
    objLeader.SizeX = 1013;  // 1519.5 bytes
    for (const auto& [nLines, nPadding, nSize] : {std::tuple{1U, 0, 1520U}, {2U, 0, 3039U}, {2U, 1, 3042U}}) {
        objLeader.SizeY = nLines;
        objLeader.PaddingX = static_cast<std::uint16_t>(nPadding);
        EXPECT_EQ(gev::GetImageSize(objLeader), nSize);
    }
}

TEST(Reassembly, BlocksWithoutABufferAreCountedAndTheStreamGoesOn) {
    CSimulatedStream objStream({}, {}, 1);
    const auto vecFirst = objStream.MakeFrame(1);
    const auto vecSecond = objStream.MakeFrame(2);
    std::for_each(vecFirst.begin(), vecFirst.end() - 5, [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
    std::ranges::for_each(vecSecond, [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
    std::for_each(vecFirst.end() - 5, vecFirst.end(), [&](const auto& arrPacket) { objStream.Deliver(arrPacket); });
    objStream.m_nNextID = 3;
    objStream.Send(2, LosesNothing);
    EXPECT_EQ(objStream.Reassembly().GetStatistics().BlocksUnderrun, 1U);
    ASSERT_EQ(objStream.m_vecFrame.size(), 3U);
    EXPECT_TRUE(std::ranges::all_of(objStream.m_vecFrame, &CSimulatedStream::FRAME::IsExact));
}

TEST(Reassembly, FrameLargerThanItsBufferIsCutAndSaysSo) {
    CSimulatedStream objSmall({}, {});
    CSimulatedStream objLarge({.SizeY = 500}, {});
    for (const auto& arrPacket : objLarge.MakeFrame(1)) {
        objSmall.Deliver(arrPacket);
    }
    ASSERT_EQ(objSmall.m_vecFrame.size(), 1U);
    EXPECT_TRUE(objSmall.m_vecFrame[0].Block.IsLargerThanMemory);
    EXPECT_TRUE(objSmall.m_vecFrame[0].Block.IsIncomplete);
    EXPECT_TRUE(objSmall.m_vecFrame[0].IsExact);
    EXPECT_EQ(objSmall.m_nRequests, 0U);
}

}  // namespace
