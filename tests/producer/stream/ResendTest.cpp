// What is asked for, when, and what is made of the answers.

#include <algorithm>
#include <chrono>
#include <vector>

#include <gtest/gtest.h>

#include "gev/BigEndian.h"
#include "gev/GvspHeader.h"
#include "producer/stream/Reassembly.h"
#include "tests/producer/stream/SimulatedStream.h"

using namespace producer;
using namespace std::chrono_literals;

namespace {

using Packet = CSimulatedStream::Packet;

constexpr std::size_t kLost = 50;

/// The answer that a packet doesn't come.
Packet Refuse(Packet arrPacket, gev::EGvcpStatus eStatus) {
    gev::Put16(arrPacket, 0, static_cast<std::uint16_t>(eStatus));
    arrPacket.resize(gev::kGvspHeaderSize);
    return arrPacket;
}

/// Nothing comes for a while.
void PassTime(CSimulatedStream& objStream, std::chrono::milliseconds objTime) {
    const auto objEnd = objStream.m_objNow + objTime;
    while (objStream.m_objNow < objEnd) {
        const auto objDue = objStream.Reassembly().GetNextDue();
        objStream.m_objNow = objDue ? std::min(objEnd, std::max(*objDue, objStream.m_objNow + 10us)) : objEnd;
        objStream.Reassembly().Service(objStream.m_objNow, objStream.m_objNow);
    }
}

void DeliverAllBut(CSimulatedStream& objStream, const std::vector<Packet>& vecPacket, std::size_t nLost) {
    for (std::size_t i = 0; i < vecPacket.size(); ++i) {
        if (i != nLost) {
            objStream.Deliver(vecPacket[i]);
        }
    }
}

TEST(Resend, CameraThatWasMuteIsAskedAsOftenAsOthersOnceItAnswers) {
    CSimulatedStream objStream({.AnswersResends = false}, {});
    const auto vecOutage = objStream.MakeFrame(1);
    for (std::size_t i = 0; i < vecOutage.size(); i += 2) {
        objStream.Deliver(vecOutage[i]);
    }
    PassTime(objStream, 400ms);
    for (std::uint64_t nID = 2; nID <= 6; ++nID) {
        DeliverAllBut(objStream, objStream.MakeFrame(nID), kLost);
        PassTime(objStream, 25ms);
        objStream.Deliver(objStream.MakeFrame(nID, true)[kLost]);
    }
    ASSERT_EQ(objStream.m_vecFrame.size(), 6U);
    for (std::size_t i = 2; i < 6; ++i) {
        EXPECT_FALSE(objStream.m_vecFrame[i].Block.IsIncomplete) << "the second behind the outage, and each after it";
    }
}

TEST(Resend, PacketThatWasAskedForTooEarlyIsAskedForAnew) {
    CSimulatedStream objStream({.AnswersResends = false}, {});
    const auto vecPacket = objStream.MakeFrame(1);
    objStream.Deliver(vecPacket[0]);
    PassTime(objStream, 500ms);  // a long exposure, behind which the first packet is lost
    const std::size_t nAsks = objStream.m_nRequests;
    std::for_each(vecPacket.begin() + 2, vecPacket.end(),
                  [&](const Packet& arrPacket) { objStream.Deliver(arrPacket); });
    PassTime(objStream, 6ms);
    EXPECT_GT(objStream.m_nRequests, nAsks);
    objStream.Deliver(objStream.MakeFrame(1, true)[1]);
    ASSERT_EQ(objStream.m_vecFrame.size(), 1U);
    EXPECT_FALSE(objStream.m_vecFrame[0].Block.IsIncomplete);
}

TEST(Resend, ErrorWithoutDataFlawsNoFrame) {
    for (const gev::EGvcpStatus eStatus : {gev::EGvcpStatus::Busy, gev::EGvcpStatus::Error}) {
        CSimulatedStream objStream({.AnswersResends = false}, {});
        DeliverAllBut(objStream, objStream.MakeFrame(1), kLost);
        objStream.Deliver(Refuse(objStream.MakeFrame(1)[kLost], eStatus));
        PassTime(objStream, 12ms);
        objStream.Deliver(objStream.MakeFrame(1, true)[kLost]);
        ASSERT_EQ(objStream.m_vecFrame.size(), 1U);
        EXPECT_FALSE(objStream.m_vecFrame[0].Block.IsIncomplete);
    }
}

TEST(Resend, RefusalOfAPacketBehindALowerImageEndsNoLostOne) {
    CSimulatedStream objStream({.AnswersResends = false}, {});
    for (const std::uint64_t nID : {1, 3}) {
        DeliverAllBut(objStream, objStream.MakeFrame(nID), kLost * kLost);
    }
    objStream.Deliver(Refuse(objStream.MakeFrame(2)[150], gev::EGvcpStatus::PacketUnavailable));
    DeliverAllBut(objStream, objStream.MakeFrame(2, true, 100), kLost * kLost);
    ASSERT_EQ(objStream.m_vecFrame.size(), 3U);
    EXPECT_FALSE(objStream.m_vecFrame[1].Block.IsIncomplete);
}

TEST(Resend, PacketsShorterThanTheRegisterTellsAreLearntEvenWithoutTheFirst) {
    CSimulatedStream objStream({}, {});
    const auto vecPacket = CSimulatedStream({.PacketSize = 1476}, {}).MakeFrame(1);
    DeliverAllBut(objStream, vecPacket, 1);
    EXPECT_LE(objStream.m_nRequests, 3U);
}

TEST(Resend, LatePacketWithoutAMarkMovesNothing) {
    CSimulatedStream objStream({.SizeY = 8, .AnswersResends = false}, {});
    for (std::uint64_t nID = 1; nID <= 102; ++nID) {
        auto vecPacket = objStream.MakeFrame(nID);
        if (nID == 101) {
            vecPacket.insert(vecPacket.begin() + 1, objStream.MakeFrame(30)[2]);
        }
        DeliverAllBut(objStream, vecPacket, vecPacket.size());
    }
    EXPECT_EQ(objStream.m_vecFrame.size(), 102U);
    EXPECT_EQ(objStream.Reassembly().GetStatistics().BlocksIncomplete + objStream.m_nRequests, 0U);
}

TEST(Resend, ImageIsNotFilledUpWithAnotherOneWhoseLeaderWasLost) {
    for (const bool bFirst : {false, true}) {
        CSimulatedStream objStream({.AnswersResends = false}, {});
        const auto vecBroken = objStream.MakeFrame(1);
        std::for_each(vecBroken.begin() + (bFirst ? 1 : 0), vecBroken.begin() + 100,
                      [&](const Packet& arrPacket) { objStream.Deliver(arrPacket); });
        auto vecOther = objStream.MakeFrame(1);
        for (Packet& arrPacket : vecOther) {
            arrPacket.back() ^= std::byte{0xFF};
        }
        DeliverAllBut(objStream, vecOther, bFirst ? vecOther.size() : 0);
        objStream.Settle();
        ASSERT_FALSE(objStream.m_vecFrame.empty());
        EXPECT_TRUE(objStream.m_vecFrame[0].Block.IsIncomplete);
    }
}

TEST(Resend, FramesAreNotGivenUpForBuffersThatNobodyWants) {
    for (const bool bThrough : {false, true}) {
        CSimulatedStream objStream({.AnswersResends = false}, {}, 2);
        objStream.m_bKeepsFrames = true;
        objStream.m_bThrough = bThrough;
        DeliverAllBut(objStream, objStream.MakeFrame(1), kLost);
        PassTime(objStream, 20ms);
        DeliverAllBut(objStream, objStream.MakeFrame(2), kLost * kLost);
        PassTime(objStream, 20ms);
        DeliverAllBut(objStream, objStream.MakeFrame(3), kLost * kLost);
        objStream.Deliver(objStream.MakeFrame(1, true)[kLost]);
        objStream.Settle();
        ASSERT_EQ(objStream.m_vecFrame.size(), 2U);
        EXPECT_EQ(objStream.m_vecFrame[0].Block.IsIncomplete, !bThrough);
    }
}

}  // namespace
