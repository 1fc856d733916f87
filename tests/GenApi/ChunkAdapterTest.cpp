#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/AccessMode.h"
#include "GenApi/ChunkAdapterGeneric.h"
#include "GenApi/GCException.h"
#include "GenApi/NodeCallback.h"
#include "tests/GenApi/TestMap.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::AccessException;
using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::OutOfRangeException;

std::string ChunkPort(const std::string& strName, const std::string& strMore) {
    return "<Port Name='" + strName + "'>" + strMore + "</Port>";
}

std::string ChunkReg(const std::string& strName, const std::string& strPort) {
    return "<IntReg Name='" + strName + "'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>" +
           strPort + "</pPort><Endianess>LittleEndian</Endianess></IntReg>";
}

/// Four chunk ports with one register each: Gain (ID a5), Line (ID 0xB6000000001), Kept, whose data is to be copied (ID
/// c7), and Moving, whose ID the device tells at address 0. Sum is computed of Gain and Line.
class ChunkAdapter : public testing::Test {
protected:
    ChunkAdapter() { Adapter.AttachNodeMap(Map.Map._Ptr); }

    /// A buffer of the memory's own size, so that a sanitizer sees each byte beyond it.
    static std::unique_ptr<std::uint8_t[]> Buffer(const std::vector<std::uint8_t>& vecByte) {
        auto pBuffer = std::make_unique<std::uint8_t[]>(vecByte.size());
        std::copy(vecByte.begin(), vecByte.end(), pBuffer.get());
        return pBuffer;
    }
    void Attach(std::uint8_t* pBuffer, const std::vector<SingleChunkData_t>& vecChunk) {
        Adapter.AttachBuffer(pBuffer, vecChunk.data(), static_cast<std::int64_t>(vecChunk.size()), &Statistics);
    }

    static constexpr std::uint64_t kGain = 0xA5;
    static constexpr std::uint64_t kLine = 0xB6000000001;
    static constexpr std::uint64_t kKept = 0xC7;

    CTestMap Map{ChunkPort("GainPort", "<ChunkID>a5</ChunkID>") +
                 ChunkPort("LinePort", "<ChunkID>0xB6000000001</ChunkID>") +
                 ChunkPort("KeptPort", "<ChunkID>C7</ChunkID><CacheChunkData>Yes</CacheChunkData>") +
                 ChunkPort("MovingPort", "<pChunkID>MovingId</pChunkID>") +
                 Reg("MovingId", 0, "<Cachable>NoCache</Cachable>") + ChunkReg("Gain", "GainPort") +
                 ChunkReg("Line", "LinePort") + ChunkReg("Kept", "KeptPort") + ChunkReg("Moving", "MovingPort") +
                 "<IntSwissKnife Name='Sum'><pVariable Name='G'>Gain</pVariable><pVariable Name='L'>Line</pVariable>"
                 "<Formula>G + L</Formula></IntSwissKnife>"};
    CChunkAdapterGeneric Adapter;
    AttachStatistics_t Statistics{};
};

TEST_F(ChunkAdapter, FeaturesAreThereWhileTheirChunkIs) {
    EXPECT_EQ(Map.Access("Gain"), NA);
    const auto pBuffer = Buffer({9, 9, 1, 0, 0, 0, 2, 0, 0, 0, 9});
    Attach(pBuffer.get(), {{kLine, 6, 4}, {0x77, 10, 1}, {kGain, 2, 4}, {kGain, 6, 4}});
    EXPECT_EQ(Map.Access("Gain"), RO);
    EXPECT_EQ(Map.Integer("Gain").GetValue(), 1) << "the first of two chunks with the same ID";
    EXPECT_EQ(Map.Integer("Sum").GetValue(), 3);
    EXPECT_EQ(Map.Access("Kept"), NA);
    EXPECT_EQ(Statistics.NumChunkPorts, 4);
    EXPECT_EQ(Statistics.NumChunks, 4);
    EXPECT_EQ(Statistics.NumAttachedChunks, 2);
    EXPECT_THROW(Map.Integer("Gain").SetValue(5), AccessException);

    Attach(pBuffer.get(), {{kGain, 6, 4}});
    EXPECT_EQ(Map.Integer("Gain").GetValue(), 2);
    EXPECT_EQ(Map.Access("Line"), NA);
    EXPECT_EQ(Map.Access("Sum"), NA);

    Adapter.DetachBuffer();
    EXPECT_EQ(Map.Access("Gain"), NA);
    EXPECT_THROW(Map.Integer("Gain").GetValue(), AccessException);
    const auto pOther = Buffer({1, 1, 1, 1});
    Adapter.UpdateBuffer(pOther.get());
    EXPECT_EQ(Map.Access("Gain"), NA) << "no layout is left to take from the buffer";
}

struct CHANGE_LOG {
    void OnChange(INode* pNode) {
        ++Calls;
        const CIntegerPtr pInteger(pNode);
        Last = IsReadable(pNode) ? pInteger->GetValue() : -1;
    }
    int Calls = 0;
    std::int64_t Last = 0;
};

TEST_F(ChunkAdapter, EachChangeCallsATouchedNodeOnceWithAllPortsChanged) {
    CHANGE_LOG objSum;
    CHANGE_LOG objMoving;
    Register(&Map.Node("Sum"), objSum, &CHANGE_LOG::OnChange);
    Register(&Map.Node("Moving"), objMoving, &CHANGE_LOG::OnChange, cbPostOutsideLock);
    const auto pFirst = Buffer({1, 0, 0, 0, 2, 0, 0, 0});
    const auto pSecond = Buffer({3, 0, 0, 0, 4, 0, 0, 0});
    const std::vector<SingleChunkData_t> vecLayout{{kGain, 0, 4}, {kLine, 4, 4}};
    const struct {
        const char* What;
        std::function<void()> Change;
        std::int64_t Sum;
    } kChanges[] = {
        {"attach", [&] { Attach(pFirst.get(), vecLayout); }, 3},
        {"attach the next", [&] { Attach(pSecond.get(), vecLayout); }, 7},
        {"update", [&] { Adapter.UpdateBuffer(pFirst.get()); }, 3},
        {"lose one chunk",
         [&] {
             Attach(pFirst.get(), {{kGain, 0, 4}});
         },
         -1},
        {"find it again", [&] { Attach(pFirst.get(), vecLayout); }, 3},
        {"detach the buffer", [&] { Adapter.DetachBuffer(); }, -1},
        {"attach once more", [&] { Attach(pFirst.get(), vecLayout); }, 3},
        {"detach the node map", [&] { Adapter.DetachNodeMap(); }, -1},
    };
    int nCalls = 0;
    for (const auto& objChange : kChanges) {
        objChange.Change();
        EXPECT_EQ(objSum.Calls, ++nCalls) << objChange.What;
        EXPECT_EQ(objSum.Last, objChange.Sum) << objChange.What;
    }
    EXPECT_EQ(objMoving.Calls, 0) << "its port never had data";
}

TEST_F(ChunkAdapter, ALayoutThatLeavesTheBufferIsRefusedAndTakesAllDataAway) {
    constexpr auto kMaxSize = std::numeric_limits<std::size_t>::max();
    constexpr auto kMaxOffset = std::numeric_limits<std::ptrdiff_t>::max();
    const auto pBuffer = Buffer({1, 0, 0, 0, 2, 0, 0, 0});
    const SingleChunkData_t kGood{kGain, 0, 4};
    const struct {
        const char* What;
        SingleChunkData_t Second;
        bool Fits;
        bool FitsUnchecked;
    } kCases[] = {
        {"up to the end", {kLine, 4, 4}, true, true},
        {"nothing at the end", {kLine, 8, 0}, true, true},
        {"one byte too long", {kLine, 4, 5}, false, true},
        {"one byte too far", {kLine, 9, 0}, false, true},
        {"before the start", {kLine, -1, 4}, false, false},
        {"far before the start", {kLine, std::numeric_limits<std::ptrdiff_t>::min(), 4}, false, false},
        {"longer than memory", {kLine, 4, kMaxSize}, false, false},
        {"around the end of memory", {kLine, kMaxOffset, kMaxSize}, false, false},
        {"of an ID nobody asks for", {0x77, 4, 5}, false, true},
    };
    for (const auto& objCase : kCases) {
        Attach(pBuffer.get(), {kGood});
        const SingleChunkData_t aLayout[] = {kGood, objCase.Second};
        EXPECT_EQ(CChunkAdapterGeneric::CheckBufferLayout(pBuffer.get(), 8, aLayout, 2), objCase.Fits) << objCase.What;
        if (objCase.Fits) {
            EXPECT_NO_THROW(Adapter.AttachBuffer(pBuffer.get(), aLayout, 2, nullptr, 8)) << objCase.What;
            continue;
        }
        EXPECT_THROW(Adapter.AttachBuffer(pBuffer.get(), aLayout, 2, nullptr, 8), InvalidArgumentException)
            << objCase.What;
        EXPECT_EQ(Map.Access("Gain"), NA) << objCase.What;
        if (!objCase.FitsUnchecked) {
            EXPECT_THROW(Adapter.AttachBuffer(pBuffer.get(), aLayout, 2), InvalidArgumentException) << objCase.What;
        }
    }
    EXPECT_THROW(Adapter.AttachBuffer(pBuffer.get(), &kGood, -1, nullptr, 8), InvalidArgumentException);
    EXPECT_THROW(Adapter.AttachBuffer(pBuffer.get(), nullptr, 1, nullptr, 8), InvalidArgumentException);
    EXPECT_THROW(Adapter.AttachBuffer(nullptr, &kGood, 1, nullptr, 8), InvalidArgumentException);
    EXPECT_THROW(Adapter.AttachBuffer(pBuffer.get(), &kGood, 1, nullptr, -8), InvalidArgumentException);
    EXPECT_NO_THROW(Adapter.AttachBuffer(nullptr, nullptr, 0, nullptr, 0));
}

TEST_F(ChunkAdapter, AChunkShorterThanItsFeatureIsAnErrorOfThatFeatureAlone) {
    const auto pBuffer = Buffer({1, 0, 0, 0, 2, 0, 0});
    Attach(pBuffer.get(), {{kGain, 0, 4}, {kLine, 4, 3}});
    EXPECT_THROW(Map.Integer("Line").GetValue(), OutOfRangeException);
    EXPECT_THROW(Map.Integer("Sum").GetValue(), OutOfRangeException);
    EXPECT_EQ(Map.Integer("Gain").GetValue(), 1);
}

TEST_F(ChunkAdapter, ACopyOutlivesItsBufferUntilTheCachesAreCleared) {
    auto pBuffer = Buffer({1, 0, 0, 0, 2, 0, 0, 0});
    const std::vector<SingleChunkData_t> vecLayout{{kGain, 0, 4}, {kKept, 4, 4}};
    Attach(pBuffer.get(), vecLayout);
    Adapter.DetachBuffer();
    pBuffer.reset();
    EXPECT_EQ(Map.Access("Gain"), NA);
    EXPECT_EQ(Map.Integer("Kept").GetValue(), 2);
    Adapter.ClearCaches();
    EXPECT_EQ(Map.Access("Kept"), NA);

    CChunkAdapterGeneric objSmall(Map.Map._Ptr, 3);
    pBuffer = Buffer({1, 0, 0, 0, 2, 0, 0, 0});
    objSmall.AttachBuffer(pBuffer.get(), vecLayout.data(), 2);
    EXPECT_EQ(Map.Integer("Kept").GetValue(), 2);
    objSmall.DetachBuffer();
    EXPECT_EQ(Map.Access("Kept"), NA) << "too large to be kept";
}

TEST_F(ChunkAdapter, AnIdFromTheDeviceIsReadWithEachLayout) {
    const auto pBuffer = Buffer({1, 0, 0, 0, 2, 0, 0, 0});
    const std::vector<SingleChunkData_t> vecLayout{{0x10, 0, 4}, {0x20, 4, 4}};
    for (const std::uint32_t nId : {0x10U, 0x20U}) {
        Map.Port.PutNumber(0, nId);
        Attach(pBuffer.get(), vecLayout);
        EXPECT_EQ(Map.Integer("Moving").GetValue(), nId == 0x10U ? 1 : 2);
    }
    Map.Port.FailFromNowOn(true);
    Attach(pBuffer.get(), {{kGain, 0, 4}});
    EXPECT_EQ(Map.Integer("Gain").GetValue(), 1) << "the other ports don't need the device";
    EXPECT_EQ(Map.Access("Moving"), NA);
}

// One adapter for each data stream of a device, all on its one node map.
TEST_F(ChunkAdapter, AnAdapterThatGoesLeavesTheDataOfAnother) {
    const auto pBuffer = Buffer({1, 0, 0, 0, 2, 0, 0, 0});
    Attach(pBuffer.get(), {{kGain, 0, 4}, {kLine, 0, 4}});
    {
        CChunkAdapterGeneric objOther(Map.Map._Ptr);
        const SingleChunkData_t objChunk{kGain, 4, 4};
        objOther.AttachBuffer(pBuffer.get(), &objChunk, 1);
        Adapter.DetachNodeMap();
        EXPECT_EQ(Map.Integer("Gain").GetValue(), 2);
        EXPECT_EQ(Map.Access("Line"), NA);
    }
    EXPECT_EQ(Map.Access("Gain"), NA);
}

}  // namespace
}  // namespace GenApi_3_0
