// Cameras, cables and answers at random: whatever happens, a frame is told complete exactly when all of it came.

#include <algorithm>
#include <chrono>
#include <cstring>
#include <map>
#include <memory>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gev/BigEndian.h"
#include "gev/GvspHeader.h"
#include "producer/stream/Reassembly.h"
#include "tests/producer/stream/SimulatedStream.h"

using namespace producer;
using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t kColumns = 640;
constexpr std::uint32_t kLines = 60;
constexpr std::uint32_t kChunkBytes = 300;
constexpr std::size_t kFrames = 200;

struct RANDOM_CASE {
    std::string Name;
    double Loss = 0.02;
    bool Chunks = false;
    bool Lower = false;           // images of any number of lines below what the leader tells
    std::size_t SpareMemory = 0;  // bytes behind the image
    bool RefusesBeyond = false;   // the camera answers for packets that its frame doesn't have
    double Gone = 0;              // of the packets that are asked for, those that the camera has no more
    bool Pauses = false;          // within frames
    std::chrono::milliseconds SlowestAnswer{2};
    std::chrono::milliseconds LongestHold{60};  // of a frame after its last packet was sent
};

void PrintTo(const RANDOM_CASE& objCase, std::ostream* pStream) {
    *pStream << objCase.Name;
}

class CRandomStream : public IBlockSink {
public:
    CRandomStream(const RANDOM_CASE& objCase, unsigned nSeed)
        : m_objCase(objCase),
          m_objCamera(MakeCamera(objCase), {}, 0),
          m_objRandom(nSeed),
          m_pReassembly(std::make_unique<CReassembly>(*this, REASSEMBLY_SETTINGS{})) {}

    void Run() {
        StreamClock::time_point objSending{};
        std::uint64_t nID = gev::kGvspHighestBlockID - 20;
        for (std::size_t nFrame = 0; nFrame < kFrames; ++nFrame) {
            FRAME& objFrame = m_mapFrame[nID];
            objFrame.Number = nFrame + 1;
            objFrame.Packets = m_objCamera.MakeFrame(nID, false, m_objCase.Lower ? 20 + Up(40) : kLines);
            for (std::uint32_t i = 0; i < objFrame.Packets.size(); ++i) {
                objSending += 12us;
                if (m_objCase.Pauses && Happens(0.005)) {
                    PassTime(objSending);
                    objSending += 1ms * Up(400);
                }
                const std::chrono::microseconds objLate(Happens(0.05) ? Up(200) : 0);
                if (!Happens(m_objCase.Loss)) {
                    Put(objSending + objLate, nID, i, objFrame.Packets[i], true);
                }
                if (Happens(0.01)) {
                    Put(objSending + 50us, nID, i, objFrame.Packets[i], true);
                }
            }
            objFrame.Sent = objSending;
            objSending += 3ms;
            PassTime(objSending);
            nID = gev::NextBlockID(nID, false);
        }
        while (!m_pReassembly->IsIdle()) {
            PassTime(std::max(m_objNow + 1ms, m_pReassembly->GetNextDue().value()));
        }
        EXPECT_EQ(m_nDelivered + m_pReassembly->GetStatistics().BlocksLost, kFrames);
    }

    std::size_t m_nIncomplete = 0;

private:
    using Packet = CSimulatedStream::Packet;
    struct FRAME {
        std::size_t Number = 0;
        std::vector<Packet> Packets;
        std::set<std::uint32_t> Came;
        StreamClock::time_point Sent{};
    };
    struct ON_WIRE {
        Packet Bytes;
        std::uint64_t BlockID;
        std::uint32_t PacketID;
        bool IsData;
    };

    bool Happens(double dRate) { return std::bernoulli_distribution(dRate)(m_objRandom); }
    unsigned Up(unsigned nMost) { return std::uniform_int_distribution(0U, nMost)(m_objRandom); }

    static CSimulatedStream::CAMERA MakeCamera(const RANDOM_CASE& objCase) {
        CSimulatedStream::CAMERA objCamera{.SizeX = kColumns, .SizeY = kLines};
        objCamera.ChunkBytes = objCase.Chunks ? kChunkBytes : 0;
        return objCamera;
    }

    void Put(StreamClock::time_point objAt, std::uint64_t nBlockID, std::uint32_t nPacketID, const Packet& arrPacket,
             bool bData) {
        m_mapWire.emplace(objAt, ON_WIRE{arrPacket, nBlockID, nPacketID, bData});
    }

    /// Delivers what arrives until then, and lets the reassembly do what is due meanwhile.
    void PassTime(StreamClock::time_point objUntil) {
        do {
            const auto objDue = m_pReassembly->GetNextDue();
            auto objNext = m_mapWire.empty() ? objUntil : std::min(objUntil, m_mapWire.begin()->first);
            objNext = objDue ? std::min(objNext, std::max(*objDue, m_objNow + 1us)) : objNext;
            m_objNow = std::max(m_objNow, objNext);
            while (!m_mapWire.empty() && m_mapWire.begin()->first <= m_objNow) {
                const ON_WIRE objPacket = std::move(m_mapWire.extract(m_mapWire.begin()).mapped());
                if (objPacket.IsData) {
                    m_mapFrame[objPacket.BlockID].Came.insert(objPacket.PacketID);
                }
                m_pReassembly->TakePacket(objPacket.Bytes, m_objNow);
            }
            m_pReassembly->Service(m_objNow, m_objNow);
        } while (m_objNow < objUntil);
    }

    void RequestResend(std::uint64_t nBlockID, std::uint32_t nFirst, std::uint32_t nLast, bool) override {
        const FRAME& objFrame = m_mapFrame[nBlockID];
        const auto objAt = m_objNow + 200us + 1us * Up(1000 * static_cast<unsigned>(m_objCase.SlowestAnswer.count()));
        for (std::uint32_t i = nFirst; i <= nLast && i < nFirst + 200 && objFrame.Sent != decltype(objAt){}; ++i) {
            const bool bThere = i < objFrame.Packets.size();
            if (Happens(m_objCase.Loss) || (!bThere && !m_objCase.RefusesBeyond)) {
                continue;
            }
            const bool bGone = !bThere || Happens(m_objCase.Gone);
            Packet arrPacket = objFrame.Packets[bThere ? i : 1];
            gev::Put16(arrPacket, 0,
                       static_cast<std::uint16_t>(bGone ? gev::EGvcpStatus::PacketUnavailable
                                                        : gev::EGvcpStatus::PacketResend));
            if (bGone) {
                arrPacket.resize(gev::kGvspHeaderSize);
                gev::Put32(arrPacket, 4, (gev::Get32(arrPacket, 4) & 0xFF00'0000) | i);
            }
            Put(objAt + 2us * i, nBlockID, i, arrPacket, !bGone);
        }
    }

    BLOCK_MEMORY TakeMemory() override {
        const std::size_t nSize = kColumns * kLines + (m_objCase.Chunks ? kChunkBytes : 0) + m_objCase.SpareMemory;
        auto pMemory = std::make_unique<std::byte[]>(nSize);  // to the byte, so that an overrun is seen
        std::byte* const pBytes = pMemory.get();
        m_mapMemory.emplace(pBytes, std::move(pMemory));
        return {{pBytes, nSize}, pBytes};
    }
    void ReturnMemory(const BLOCK_MEMORY& objMemory) override { m_mapMemory.erase(objMemory.Memory.data()); }

    void DeliverBlock(const FINISHED_BLOCK& objBlock) override {
        const FRAME& objFrame = m_mapFrame[objBlock.BlockID];
        EXPECT_GT(objFrame.Number, m_nLast) << "out of order";
        m_nLast = objFrame.Number;
        ++m_nDelivered;
        m_nIncomplete += objBlock.IsIncomplete ? 1 : 0;
        const bool bAllCame = objFrame.Came.size() == objFrame.Packets.size();
        EXPECT_EQ(objBlock.IsIncomplete, !bAllCame) << "frame " << objFrame.Number;
        EXPECT_LE(m_objNow - objFrame.Sent, m_objCase.LongestHold) << "frame " << objFrame.Number;
        std::size_t nOffset = 0;
        for (std::size_t i = 1; i + 1 < objFrame.Packets.size() && !objBlock.IsIncomplete; ++i) {
            const auto spanData = std::span(objFrame.Packets[i]).subspan(gev::kGvspHeaderSize);
            const auto spanPlace = objBlock.Memory.Memory.subspan(nOffset, spanData.size());
            EXPECT_EQ(std::memcmp(spanPlace.data(), spanData.data(), spanData.size()), 0);
            nOffset += spanData.size();
        }
        EXPECT_TRUE(objBlock.IsIncomplete || (objBlock.Filled == nOffset && objBlock.DataSize == nOffset));
        m_mapMemory.erase(objBlock.Memory.Memory.data());
    }

    const RANDOM_CASE m_objCase;
    const CSimulatedStream m_objCamera;
    std::mt19937 m_objRandom;
    std::map<std::uint64_t, FRAME> m_mapFrame;
    std::multimap<StreamClock::time_point, ON_WIRE> m_mapWire;
    std::map<std::byte*, std::unique_ptr<std::byte[]>> m_mapMemory;
    StreamClock::time_point m_objNow{};
    std::size_t m_nDelivered = 0;
    std::size_t m_nLast = 0;
    std::unique_ptr<CReassembly> m_pReassembly;
};

class RandomStream : public testing::TestWithParam<RANDOM_CASE> {};

TEST_P(RandomStream, FrameIsToldCompleteExactlyWhenAllOfItCame) {
    std::size_t nIncomplete = 0;
    for (unsigned nSeed = 1; nSeed <= 3; ++nSeed) {
        SCOPED_TRACE("seed " + std::to_string(nSeed));
        CRandomStream objStream(GetParam(), nSeed);
        objStream.Run();
        nIncomplete += objStream.m_nIncomplete;
    }
    EXPECT_LE(nIncomplete, GetParam().Gone > 0 ? kFrames / 4 : GetParam().Loss > 0.05 ? 2 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Cameras, RandomStream,
    testing::Values(RANDOM_CASE{.Name = "Plain"}, RANDOM_CASE{.Name = "SlowToAnswer", .SlowestAnswer = 30ms},
                    RANDOM_CASE{.Name = "Halting", .Loss = 0.002, .RefusesBeyond = true, .Pauses = true},
                    RANDOM_CASE{.Name = "Forgetful", .RefusesBeyond = true, .Gone = 0.1},
                    RANDOM_CASE{.Name = "Lower", .Lower = true},
                    RANDOM_CASE{.Name = "LowerAndRefusing", .Lower = true, .SpareMemory = 5000, .RefusesBeyond = true},
                    RANDOM_CASE{.Name = "LowerChunks", .Chunks = true, .Lower = true, .RefusesBeyond = true},
                    RANDOM_CASE{.Name = "ForgetfulWithChunksAndSpareMemory",
                                .Chunks = true,
                                .SpareMemory = 50'000,
                                .RefusesBeyond = true,
                                .Gone = 0.1},
                    RANDOM_CASE{.Name = "BadCable",
                                .Loss = 0.1,
                                .Lower = true,
                                .SpareMemory = 3000,
                                .RefusesBeyond = true,
                                .Pauses = true,
                                .LongestHold = 120ms}),
    [](const auto& objInfo) { return objInfo.param.Name; });

}  // namespace
