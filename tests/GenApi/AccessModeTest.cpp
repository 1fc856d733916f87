#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/PortConstruct.h"
#include "tests/GenApi/TestMap.h"

namespace {

using namespace GenApi_3_0;
using GenICam_3_0::AccessException;

// The register R below the feature F, under flags that are registers of the same names.
std::string Feature(const std::string& strRegister, const std::string& strFeature) {
    return Reg("Implemented", 100) + Reg("Available", 104) + Reg("Locked", 108) +
           "<IntReg Name='R'><Address>0</Address><Length>4</Length><pPort>Device</pPort>" + strRegister +
           "</IntReg><Integer Name='F'><pValue>R</pValue>" + strFeature + "</Integer>";
}

TEST(AccessModes, AreMadeOfAllThatANodeStandsOn) {
    struct CASE {
        const char* Register;
        const char* Feature;
        std::uint32_t Implemented, Available, Locked;
        EAccessMode Port;
        EAccessMode Expected;
    };
    const char* const pFlags =
        "<pIsImplemented>Implemented</pIsImplemented><pIsAvailable>Available</pIsAvailable><pIsLocked>Locked</"
        "pIsLocked>";
    const std::vector<CASE> vecCase = {
        {"<AccessMode>RW</AccessMode>", "", 0, 0, 0, RW, RW},
        {"", "", 0, 0, 0, RW, RO},
        {"<AccessMode>WO</AccessMode>", "", 0, 0, 0, RW, WO},
        {"<AccessMode>RW</AccessMode>", "<ImposedAccessMode>RO</ImposedAccessMode>", 0, 0, 0, RW, RO},
        {"<AccessMode>RO</AccessMode>", "<ImposedAccessMode>WO</ImposedAccessMode>", 0, 0, 0, RW, NA},
        {"<AccessMode>RW</AccessMode>", "", 0, 0, 0, RO, RO},
        {"<AccessMode>RW</AccessMode>", pFlags, 1, 1, 0, RW, RW},
        {"<AccessMode>RW</AccessMode>", pFlags, 1, 1, 1, RW, RO},
        {"<AccessMode>WO</AccessMode>", pFlags, 1, 1, 1, RW, NA},
        {"<AccessMode>RW</AccessMode>", pFlags, 1, 0, 0, RW, NA},
        {"<AccessMode>RW</AccessMode>", pFlags, 0, 1, 0, RW, NI},
        {"<AccessMode>RW</AccessMode><pIsLocked>Locked</pIsLocked>", "", 0, 0, 1, RW, RO},
    };
    for (std::size_t i = 0; i < vecCase.size(); ++i) {
        const CASE& objCase = vecCase[i];
        CTestMap objMap(Feature(objCase.Register, objCase.Feature));
        objMap.Port.PutNumber(100, objCase.Implemented);
        objMap.Port.PutNumber(104, objCase.Available);
        objMap.Port.PutNumber(108, objCase.Locked);
        objMap.Port.SetAccessMode(objCase.Port);
        EXPECT_EQ(objMap.Access("F"), objCase.Expected) << "case " << i;
    }
}

TEST(AccessModes, FollowTheirFlagsAndDontReadThemAgainInBetween) {
    CTestMap objMap(Feature("<AccessMode>RW</AccessMode>", "<pIsLocked>Locked</pIsLocked>"));
    EXPECT_EQ(objMap.Access("F"), RW);
    objMap.Port.TakeReads();
    EXPECT_EQ(objMap.Access("F"), RW);
    EXPECT_EQ(objMap.Port.TakeReads(), 0);
    objMap.Integer("Locked").SetValue(1);
    EXPECT_EQ(objMap.Access("F"), RO);
    EXPECT_THROW(objMap.Integer("F").SetValue(1), AccessException);
    EXPECT_NO_THROW(objMap.Integer("F").SetValue(1, false)) << "without verification the device decides";
    objMap.Integer("Locked").SetValue(0);
    EXPECT_EQ(objMap.Access("F"), RW);
}

TEST(AccessModes, CanBeNarrowedAndGivenBackByTheUser) {
    CTestMap objMap(Feature("<AccessMode>RW</AccessMode>", "") + "<Integer Name='Above'><pValue>F</pValue></Integer>");
    EXPECT_EQ(objMap.Access("Above"), RW);
    objMap.Node("F").ImposeAccessMode(RO);
    EXPECT_EQ(objMap.Access("Above"), RO);
    objMap.Node("F").ImposeAccessMode(RW);
    EXPECT_EQ(objMap.Access("Above"), RW);
}

TEST(AccessModes, EndWhereLocksHangOnEachOther) {
    CTestMap objMap(
        Reg("A", 0, "<pIsLocked>LockA</pIsLocked>") + Reg("B", 4, "<pIsLocked>LockB</pIsLocked>") +
        "<IntSwissKnife Name='LockA'><pVariable Name='B'>B</pVariable><Formula>B = 1</Formula></IntSwissKnife>"
        "<IntSwissKnife Name='LockB'><pVariable Name='A'>A</pVariable><Formula>A = 1</Formula></IntSwissKnife>");
    EXPECT_EQ(objMap.Access("A"), RW);
    EXPECT_EQ(objMap.Access("B"), RW);
    objMap.Integer("B").SetValue(1);
    EXPECT_EQ(objMap.Access("A"), RO);
    EXPECT_EQ(objMap.Access("B"), RW);
    EXPECT_EQ(objMap.Node("A").IsAccessModeCacheable(), Yes) << "where the circle closes the answer holds";
}

TEST(AccessModes, FoundInsideACircleAreNotKept) {
    CTestMap objMap(
        Reg("A", 0, "<pIsImplemented>KnifeOfB</pIsImplemented><pIsAvailable>Zero</pIsAvailable>") +
        Reg("B", 4, "<pIsLocked>KnifeOfA</pIsLocked>") + "<Integer Name='Zero'><Value>0</Value></Integer>" +
        "<IntSwissKnife Name='KnifeOfB'><pVariable Name='B'>B</pVariable><Formula>B + 1</Formula></IntSwissKnife>"
        "<IntSwissKnife Name='KnifeOfA'><pVariable Name='A'>A</pVariable><Formula>A</Formula></IntSwissKnife>");
    // On the way to A's access mode, B's is found under the assumption that A can be read.
    EXPECT_EQ(objMap.Access("A"), NA);
    EXPECT_EQ(objMap.Access("B"), RO) << "its lock hangs on A, which can't be read";
}

TEST(AccessModes, OfFormulasHangOnTheirVariables) {
    CTestMap objMap(Reg("V", 0, "<pIsAvailable>Flag</pIsAvailable>") + Reg("Flag", 4) +
                    "<IntSwissKnife Name='K'><pVariable Name='V'>V</pVariable><Formula>V + 1</Formula></IntSwissKnife>"
                    "<Integer Name='F'><Value>1</Value><pIsLocked>K</pIsLocked></Integer>"
                    "<Integer Name='G'><Value>1</Value><pIsAvailable>V</pIsAvailable></Integer>");
    EXPECT_EQ(objMap.Access("K"), NA);
    EXPECT_EQ(objMap.Access("F"), RO) << "a lock that can't be read counts as closed";
    EXPECT_EQ(objMap.Access("G"), NA);
    EXPECT_THROW(objMap.Integer("K").GetValue(), AccessException);
    objMap.Integer("Flag").SetValue(1);
    EXPECT_EQ(objMap.Access("K"), RO);
    EXPECT_EQ(objMap.Integer("K").GetValue(), 1);
}

TEST(Ports, WithoutConnectionLeaveTheirNodesUnavailable) {
    const std::string strChunk =
        "<Port "
        "Name='Chunk'><ChunkID>0a01</ChunkID><SwapEndianess>Yes</SwapEndianess><CacheChunkData>Yes</CacheChunkData></"
        "Port>"
        "<IntReg Name='ChunkReg'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Chunk</pPort>"
        "<Endianess>BigEndian</Endianess></IntReg><Integer Name='ChunkValue'><pValue>ChunkReg</pValue></Integer>"
        "<IntReg Name='NoPort'><Address>0</Address><Length>4</Length></IntReg>";
    CTestMap objMap(strChunk + Reg("R", 0), false);
    EXPECT_EQ(objMap.Access("R"), NA);
    EXPECT_EQ(objMap.Access("NoPort"), NA);
    EXPECT_THROW(objMap.Integer("R").GetValue(), AccessException);
    EXPECT_THROW(objMap.Integer("R").SetValue(1, false), AccessException);
    EXPECT_TRUE(objMap.Map._Connect(&objMap.Port, "Device"));
    EXPECT_FALSE(objMap.Map._Connect(&objMap.Port, "Nonsense"));
    EXPECT_FALSE(objMap.Map._Connect(&objMap.Port, "R"));
    EXPECT_EQ(objMap.Integer("R").GetValue(), 0);
    EXPECT_EQ(objMap.Access("ChunkValue"), NA);

    CMemoryPort objChunk;
    objChunk.PutNumber(0, 5);
    auto& objPort = dynamic_cast<IPortConstruct&>(objMap.Node("Chunk"));
    EXPECT_EQ(objPort.GetChunkID(), "0a01");
    EXPECT_TRUE(objPort.IsChunkDataCached());
    objPort.SetPortImpl(&objChunk);
    EXPECT_EQ(objMap.Integer("ChunkValue").GetValue(), 5) << "the port turns the byte order round";
    objChunk.PutNumber(0, 6);
    EXPECT_EQ(objMap.Integer("ChunkValue").GetValue(), 5);
    objMap.Node("Chunk").InvalidateNode();
    EXPECT_EQ(objMap.Integer("ChunkValue").GetValue(), 6);
    objPort.SetPortImpl(nullptr);
    EXPECT_EQ(objMap.Access("ChunkValue"), NA);
}

TEST(Ports, ThatCloseAndOpenAgainAreNoticed) {
    CTestMap objMap(Reg("R", 0));
    objMap.Port.SetAccessMode(NA);
    EXPECT_EQ(objMap.Access("R"), NA);
    objMap.Port.SetAccessMode(RO);
    EXPECT_EQ(objMap.Access("R"), RO);
    objMap.Port.SetAccessMode(RW);
    EXPECT_EQ(objMap.Access("R"), RW);
}

}  // namespace
