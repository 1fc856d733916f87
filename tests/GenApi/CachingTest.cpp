#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/PortConstruct.h"
#include "tests/GenApi/DescriptionGenerator.h"
#include "tests/GenApi/TestMap.h"

namespace {

using namespace GenApi_3_0;

TEST(Caching, ReadsAndWritesThePortAsTheModeSays) {
    struct CASE {
        const char* Mode;
        int FirstRead, SecondRead, ReadAfterWrite;
    };
    for (const CASE& objCase :
         {CASE{"WriteThrough", 1, 0, 0}, CASE{"WriteAround", 1, 0, 1}, CASE{"NoCache", 1, 1, 1}}) {
        SCOPED_TRACE(objCase.Mode);
        CTestMap objMap(Reg("R", 0, std::string("<Cachable>") + objCase.Mode + "</Cachable>") +
                        "<Integer Name='F'><pValue>R</pValue></Integer><Boolean Name='B'><pValue>R</pValue></Boolean>");
        for (const char* pName : {"R", "F"}) {
            objMap.Node("R").InvalidateNode();
            objMap.Integer(pName).GetValue();
            EXPECT_EQ(objMap.Port.TakeReads(), objCase.FirstRead);
            objMap.Integer(pName).GetValue();
            EXPECT_EQ(objMap.Port.TakeReads(), objCase.SecondRead);
            objMap.Integer(pName).GetValue(false, true);
            EXPECT_EQ(objMap.Port.TakeReads(), 1);
            objMap.Integer(pName).SetValue(5);
            EXPECT_EQ(objMap.Port.TakeWrites(), 1);
            EXPECT_EQ(objMap.Port.TakeReads(), 0);
            EXPECT_EQ(objMap.Integer(pName).GetValue(), 5);
            EXPECT_EQ(objMap.Port.TakeReads(), objCase.ReadAfterWrite);
        }
        objMap.Integer("R").SetValue(0);
        EXPECT_FALSE(objMap.Boolean("B").GetValue(true));
        EXPECT_EQ(objMap.Port.TakeReads(), objCase.ReadAfterWrite) << "what is verified is what was read";
        EXPECT_EQ(objMap.Node("F").IsCachable(), std::string(objCase.Mode) != "NoCache");
    }
}

TEST(Caching, PastTheCacheAFoundChangeReachesWhatDependsOnIt) {
    CTestMap objMap(
        Reg("R", 0) +
        "<Integer Name='F'><pValue>R</pValue></Integer>"
        "<IntSwissKnife Name='K'><pVariable Name='R'>R</pVariable><Formula>R * 2</Formula></IntSwissKnife>");
    EXPECT_EQ(objMap.Integer("F").GetValue() + objMap.Integer("K").GetValue(), 0);
    objMap.Port.PutNumber(0, 5);
    EXPECT_EQ(objMap.Integer("F").GetValue(), 0);
    EXPECT_EQ(objMap.Integer("F").GetValue(false, true), 5);
    EXPECT_EQ(objMap.Integer("R").GetValue(), 5);
    EXPECT_EQ(objMap.Integer("K").GetValue(), 10);
    EXPECT_EQ(objMap.Port.TakeReads(), 2);
}

TEST(Caching, KeepsNothingThatStandsOnAnUncachedValue) {
    CTestMap objMap(
        Reg("Status", 0, "<Cachable>NoCache</Cachable>") + Reg("Bank0", 16) + Reg("Bank4", 20) +
        "<IntSwissKnife Name='Twice'><pVariable Name='S'>Status</pVariable><Formula>S * 2</Formula></IntSwissKnife>"
        "<Integer Name='Locked'><Value>1</Value><pIsLocked>Status</pIsLocked></Integer>"
        "<IntReg "
        "Name='Moving'><Address>16</Address><pAddress>Status</pAddress><Length>4</Length><pPort>Device</pPort></"
        "IntReg>");
    objMap.Port.PutNumber(16, 111);
    objMap.Port.PutNumber(20, 222);
    EXPECT_EQ(objMap.Integer("Twice").GetValue(), 0);
    EXPECT_EQ(objMap.Integer("Moving").GetValue(), 111);
    EXPECT_EQ(objMap.Access("Locked"), RW);
    objMap.Port.PutNumber(0, 4);
    EXPECT_EQ(objMap.Integer("Twice").GetValue(), 8);
    EXPECT_EQ(objMap.Integer("Moving").GetValue(), 222);
    EXPECT_EQ(objMap.Access("Locked"), RO);
    EXPECT_EQ(objMap.Node("Locked").IsAccessModeCacheable(), No);
}

/// The names of those of a map's nodes whose registers are read again after something happened.
class CReread {
public:
    explicit CReread(CTestMap& objMap, std::vector<const char*> vecName)
        : m_objMap(objMap), m_vecName(std::move(vecName)) {
        Names();
    }
    std::vector<std::string> Names() {
        std::vector<std::string> vecReread;
        for (const char* pName : m_vecName) {
            m_objMap.Port.TakeReads();
            m_objMap.Integer(pName).GetValue();
            if (m_objMap.Port.TakeReads() > 0) {
                vecReread.emplace_back(pName);
            }
        }
        return vecReread;
    }

private:
    CTestMap& m_objMap;
    std::vector<const char*> m_vecName;
};

TEST(Invalidation, ReachesWhatDependsOnTheWrittenNodeAndNothingElse) {
    CTestMap objMap(
        Reg("Mode", 0) + Reg("Direct", 4, "<pInvalidator>ModeFeature</pInvalidator>") +
        Reg("Far", 8, "<pInvalidator>Knife</pInvalidator>") + Reg("Other", 12) + Reg("Limited", 16) +
        Reg("Locked", 20, "<pIsLocked>Mode</pIsLocked>") + Reg("Mutual", 24, "<pInvalidator>Partner</pInvalidator>") +
        Reg("Partner", 28, "<pInvalidator>Mutual</pInvalidator>") +
        "<Integer Name='ModeFeature'><pValue>Mode</pValue></Integer>"
        "<IntSwissKnife Name='Knife'><pVariable Name='M'>ModeFeature</pVariable><Formula>M</Formula></IntSwissKnife>"
        "<Integer Name='LimitedFeature'><pValue>Limited</pValue><pMax>Mode</pMax></Integer>"
        "<IntReg Name='Indexed'><Address>100</Address><pIndex "
        "Offset='4'>Mode</pIndex><Length>4</Length><pPort>Device</pPort></IntReg>");
    CReread objReread(objMap,
                      {"Mode", "Direct", "Far", "Other", "LimitedFeature", "Locked", "Mutual", "Partner", "Indexed"});
    objMap.Integer("ModeFeature").SetValue(1);
    EXPECT_EQ(objReread.Names(), (std::vector<std::string>{"Direct", "Far", "Indexed"}));
    EXPECT_EQ(objMap.Access("Locked"), RO);
    EXPECT_EQ(objMap.Integer("LimitedFeature").GetMax(), 1);
    objMap.Integer("Other").SetValue(1);
    EXPECT_EQ(objReread.Names(), std::vector<std::string>{});
    objMap.Integer("Mutual").SetValue(1);
    // The partner's answer to the change may be to change this one.
    EXPECT_EQ(objReread.Names(), (std::vector<std::string>{"Mutual", "Partner"}));
    objMap.Node("Mode").InvalidateNode();
    EXPECT_EQ(objReread.Names(), (std::vector<std::string>{"Mode", "Direct", "Far", "Indexed"}));
    objMap.Map._InvalidateNodes();
    EXPECT_EQ(objReread.Names().size(), 9u);
}

TEST(Invalidation, OfBitsLeavesOtherBitsOfTheRegisterAlone) {
    const auto Bits = [](const char* pName, int nLsb, int nMsb) {
        return std::string("<MaskedIntReg Name='") + pName +
               "'><Address>8</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><LSB>" +
               std::to_string(nLsb) + "</LSB><MSB>" + std::to_string(nMsb) + "</MSB></MaskedIntReg>";
    };
    CTestMap objMap(Bits("Low", 0, 3) + Bits("Middle", 2, 5) + Bits("High", 8, 9) + Reg("Whole", 8));
    CReread objReread(objMap, {"Low", "Middle", "High", "Whole"});
    objMap.Integer("Low").SetValue(15);
    EXPECT_EQ(objMap.Port.TakeReads(), 1) << "of the bits beside it";
    EXPECT_EQ(objReread.Names(), std::vector<std::string>{}) << "the new bits are known too";
    EXPECT_EQ(objMap.Integer("Middle").GetValue(), 3);
    EXPECT_EQ(objMap.Integer("Whole").GetValue(), 15);
    objMap.Integer("Whole").SetValue(0x300);
    EXPECT_EQ(objMap.Integer("High").GetValue(), 3);
    EXPECT_EQ(objMap.Integer("Low").GetValue(), 0);
}

// The bits beside those that are written may have changed without anybody's word.
TEST(Caching, NeverPutsOldBitsBack) {
    CTestMap objMap(
        "<MaskedIntReg Name='Low'><Address>8</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort><LSB>0</LSB><MSB>3</MSB></MaskedIntReg>"
        "<MaskedIntReg Name='High'><Address>8</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort><LSB>8</LSB><MSB>15</MSB></MaskedIntReg>"
        "<Integer Name='Two'><Value>2</Value></Integer>"
        "<IntReg Name='Computed'><Address>0</Address><pIndex Offset='4'>Two</pIndex><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>");
    objMap.Integer("High").SetValue(1);
    objMap.Integer("Low").SetValue(1);
    objMap.Integer("Computed").SetValue(0x2200);
    objMap.Integer("Low").SetValue(2);
    EXPECT_EQ(objMap.Port.NumberAt(8), 0x2202);
    EXPECT_EQ(objMap.Integer("High").GetValue(), 0x22);
    objMap.Port.PutNumber(8, 0x3302);  // the device itself
    objMap.Integer("Low").SetValue(3);
    EXPECT_EQ(objMap.Port.NumberAt(8), 0x3303);
}

TEST(Invalidation, ReachesRegistersOfOtherPlacesThatOverlap) {
    const auto Part = [](const char* pKind, const char* pName, int nAddress, int nLength, const char* pBit) {
        return std::string("<") + pKind + " Name='" + pName + "'><Address>" + std::to_string(nAddress) +
               "</Address><Length>" + std::to_string(nLength) + "</Length>" + pBit +
               "<AccessMode>RW</AccessMode><pPort>Device</pPort></" + pKind + ">";
    };
    CTestMap objMap(Reg("Word", 0) + Part("IntReg", "Half", 2, 2, "") +
                    Part("MaskedIntReg", "Bit", 2, 2, "<Bit>0</Bit>") + Part("IntReg", "Both", 0, 8, "") +
                    Reg("Second", 4) + Reg("Next", 8) + "<Integer Name='Feature'><pValue>Half</pValue></Integer>");
    using Names = std::vector<std::string>;
    CReread objReread(objMap, {"Word", "Half", "Bit", "Both", "Second", "Next"});
    EXPECT_EQ(objMap.Integer("Feature").GetValue(), 0);
    objMap.Integer("Word").SetValue(0x10000);
    EXPECT_EQ(objReread.Names(), (Names{"Half", "Both"}));
    EXPECT_EQ(objMap.Integer("Feature").GetValue(), 1);
    EXPECT_EQ(objMap.Integer("Bit").GetValue(), 1);
    objMap.Integer("Bit").SetValue(0);
    EXPECT_EQ(objReread.Names(), (Names{"Word", "Both"})) << "the rest of the half is known";
    objMap.Integer("Next").SetValue(1);
    EXPECT_EQ(objReread.Names(), Names{});
    objMap.Integer("Both").SetValue(5);
    EXPECT_EQ(objReread.Names(), (Names{"Word", "Half", "Second"}));
}

TEST(Invalidation, FollowsAWriteThatFailed) {
    CTestMap objMap(Reg("R", 0) + Reg("Dependent", 4, "<pInvalidator>R</pInvalidator>"));
    CReread objReread(objMap, {"R", "Dependent"});
    objMap.Port.FailFromNowOn(true);
    EXPECT_THROW(objMap.Integer("R").SetValue(1), std::runtime_error) << "what the port throws passes through";
    objMap.Port.FailFromNowOn(false);
    EXPECT_EQ(objReread.Names(), (std::vector<std::string>{"R", "Dependent"}));
}

TEST(Invalidation, ReachesWhatASelectorSelectsDownToTheRegister) {
    CTestMap objMap(
        Reg("SelReg", 0) + Reg("GainReg", 4) + Reg("Other", 8) +
        "<Enumeration Name='Sel'><EnumEntry Name='A'><Value>0</Value></EnumEntry><EnumEntry Name='B'><Value>1</Value>"
        "</EnumEntry><pValue>SelReg</pValue><pSelected>Gain</pSelected></Enumeration>"
        "<Integer Name='Gain'><pValue>Middle</pValue></Integer><Integer "
        "Name='Middle'><pValue>GainReg</pValue></Integer>");
    CReread objReread(objMap, {"Gain", "Other"});
    objMap.Enumeration("Sel").FromString("B");
    EXPECT_EQ(objReread.Names(), std::vector<std::string>{"Gain"});

    FeatureList_t vecFeature;
    dynamic_cast<ISelector&>(objMap.Node("Gain")).GetSelectingFeatures(vecFeature);
    ASSERT_EQ(vecFeature.size(), 1u);
    EXPECT_EQ(vecFeature[0]->GetNode(), &objMap.Node("Sel"));
}

TEST(Invalidation, ReachesTheRegisterBelow) {
    CTestMap objMap(
        Reg("Mode", 0) + Reg("A", 4) + Reg("B", 8) +
        "<Integer Name='Feature'><pInvalidator>Mode</pInvalidator><PollingTime>100</PollingTime>"
        "<pValue>Middle</pValue></Integer>"
        "<Integer Name='Middle'><pIndex>Which</pIndex><pValueIndexed Index='0'>A</pValueIndexed>"
        "<pValueIndexed Index='1'>B</pValueIndexed></Integer><Integer Name='Which'><Value>1</Value></Integer>");
    CReread objReread(objMap, {"Feature"});
    const std::pair<const char*, std::function<void()>> arrChange[] = {
        {"invalidator", [&] { objMap.Integer("Mode").SetValue(1); }},
        {"the user", [&] { objMap.Node("Feature").InvalidateNode(); }},
        {"time", [&] { objMap.Map._Poll(100); }}};
    for (const auto& [pName, fnChange] : arrChange) {
        fnChange();
        EXPECT_EQ(objReread.Names(), std::vector<std::string>{"Feature"}) << pName;
    }
}

TEST(Polling, DropsWhatWasCachedWhenItsTimeIsOver) {
    CTestMap objMap(Reg("Slow", 0, "<PollingTime>1000</PollingTime>") +
                    Reg("Fast", 4, "<PollingTime>100</PollingTime>") + Reg("Never", 8));
    CReread objReread(objMap, {"Slow", "Fast", "Never"});
    using Names = std::vector<std::string>;
    const std::pair<std::int64_t, Names> arrStep[] = {
        {99, {}}, {1, {"Fast"}}, {-7, {}}, {900, {"Slow", "Fast"}}, {INT64_MAX, {"Slow", "Fast"}}};
    for (const auto& [nElapsed, vecExpected] : arrStep) {
        objMap.Map._Poll(nElapsed);
        EXPECT_EQ(objReread.Names(), vecExpected) << nElapsed;
    }
}

TEST(BigDescription, IsListedWithAtMostOneReadOfEachRegister) {
    GenApi_3_0::CNodeMapRef objMap;
    objMap._LoadXMLFromString(GenerateDescription(kBigDescriptionSize));
    CMemoryPort objPort;
    ASSERT_TRUE(objMap._Connect(&objPort, "Device"));
    NodeList_t vecNode;
    objMap._GetNodes(vecNode);
    EXPECT_GT(vecNode.size(), 3000u);
    int nRead = 0;
    for (INode* pNode : vecNode) {
        auto* pValue = dynamic_cast<IValue*>(pNode);
        if (pNode->IsFeature() && pValue != nullptr && IsReadable(pNode)) {
            pValue->ToString();
            ++nRead;
        }
    }
    EXPECT_GT(nRead, 500);
    EXPECT_GT(objPort.ReadsAt().size(), 500u);
    for (const auto& [nAddress, nReads] : objPort.ReadsAt()) {
        EXPECT_EQ(nReads, 1) << nAddress;
    }
    objMap._GetNode("Width");
    auto& objWidth = *CIntegerPtr(objMap._GetNode("Width_Reg"));
    objWidth.SetValue(640);
    EXPECT_EQ(objWidth.GetValue(), 640);
}

}  // namespace
