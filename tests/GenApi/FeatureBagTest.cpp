#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/FeatureBag.h"
#include "GenApi/FeatureErrors.h"
#include "GenApi/GCException.h"
#include "tests/GenApi/TestMap.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::InvalidArgumentException;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kStreamable = "<Streamable>Yes</Streamable>";

std::vector<std::string> LinesOf(const CFeatureBag& objBag) {
    std::vector<std::string> vecLine;
    for (std::size_t i = 0; i < objBag.GetNames().size(); ++i) {
        vecLine.push_back(objBag.GetNames()[i].str() + "=" + objBag.GetValues()[i].str());
    }
    return vecLine;
}

std::vector<std::string> TextsOf(const gcstring_vector& vecText) {
    std::vector<std::string> vecResult;
    for (const gcstring& strText : vecText) {
        vecResult.push_back(strText.str());
    }
    return vecResult;
}

std::vector<std::string> Stored(CTestMap& objMap, int nMaxPersistSets = -1) {
    CFeatureBag objBag;
    gcstring_vector vecError;
    EXPECT_TRUE(objBag.StoreToBag(objMap.Map._Ptr, nMaxPersistSets, &vecError));
    EXPECT_THAT(TextsOf(vecError), IsEmpty());
    return LinesOf(objBag);
}

/// Each as "Name[Selector=Value,...]: in the bag, on the device".
std::vector<std::string> Differences(const CFeatureBag& objBag, CTestMap& objMap, gcstring_vector* pErrorList) {
    std::vector<std::string> vecText;
    for (const FEATURE_DIFFERENCE& objDifference : objBag.CompareWith(objMap.Map._Ptr, pErrorList)) {
        std::string strSelectors;
        for (const auto& [strName, strValue] : objDifference.Selectors) {
            strSelectors += (strSelectors.empty() ? "" : ",") + strName + "=" + strValue;
        }
        vecText.push_back(objDifference.Name + "[" + strSelectors + "]: " + objDifference.InBag + ", " +
                          objDifference.OnDevice);
    }
    return vecText;
}

CFeatureBag BagOf(const std::string& strLines) {
    std::istringstream stream("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n" + strLines);
    CFeatureBag objBag;
    stream >> objBag;
    return objBag;
}

std::string Category(const std::string& strName, const std::vector<std::string>& vecFeature) {
    std::string strText = "<Category Name='" + strName + "'>";
    for (const std::string& strFeature : vecFeature) {
        strText += "<pFeature>" + strFeature + "</pFeature>";
    }
    return strText + "</Category>";
}

/// An Integer on a register of its own, streamable.
std::string Feature(const std::string& strName, int nAddress, const std::string& strMore = {}) {
    return "<Integer Name='" + strName + "'>" + strMore + kStreamable + "<pValue>" + strName +
           "Reg</pValue></Integer>" + Reg(strName + "Reg", nAddress);
}

/// An Enumeration on a register of its own, its entries numbered from 0.
std::string Enumeration(const std::string& strName, int nAddress, const std::vector<std::string>& vecEntry,
                        const std::string& strMore = {}) {
    std::string strText = "<Enumeration Name='" + strName + "'>" + strMore;
    for (std::size_t i = 0; i < vecEntry.size(); ++i) {
        strText += "<EnumEntry Name='" + vecEntry[i] + "'><Value>" + std::to_string(i) + "</Value></EnumEntry>";
    }
    return strText + "<pValue>" + strName + "Reg</pValue></Enumeration>" + Reg(strName + "Reg", nAddress);
}

/// A 4-byte register at an address that the selectors move, each by its own stride.
std::string SelectedReg(const std::string& strName, int nAddress,
                        const std::vector<std::pair<std::string, int>>& vecSelector, const std::string& strMore = {}) {
    std::string strText =
        "<IntReg Name='" + strName + "'>" + strMore + "<Address>" + std::to_string(nAddress) + "</Address>";
    for (const auto& [strSelector, nStride] : vecSelector) {
        strText += "<pIndex Offset='" + std::to_string(nStride) + "'>" + strSelector + "</pIndex>";
    }
    return strText +
           "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
           "<Endianess>LittleEndian</Endianess></IntReg>";
}

std::string Selects(const std::vector<std::string>& vecFeature) {
    std::string strText;
    for (const std::string& strFeature : vecFeature) {
        strText += "<pSelected>" + strFeature + "</pSelected>";
    }
    return strText;
}

// There and back

TEST(FeatureBag, WhatOneDeviceStoresAnotherTakesBack) {
    const std::string strDescription =
        Feature("Width", 0, "<Representation>HexNumber</Representation>") +
        Feature("Address", 4, "<Representation>IPV4Address</Representation>") + "<Float Name='Rate'>" + kStreamable +
        "<DisplayNotation>Fixed</DisplayNotation><DisplayPrecision>1</DisplayPrecision>"
        "<pValue>RateReg</pValue></Float><FloatReg Name='RateReg'><Address>8</Address><Length>8</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>LittleEndian</Endianess></FloatReg>"
        "<Boolean Name='Flip'>" +
        kStreamable + "<pValue>FlipReg</pValue></Boolean>" + Reg("FlipReg", 16) +
        Enumeration("Mode", 20, {"Off", "Once"}, kStreamable) + "<StringReg Name='Label'>" + kStreamable +
        "<Address>24</Address><Length>32</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort></StringReg>"
        "<Register Name='Table'>" +
        kStreamable +
        "<Address>56</Address><Length>3</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort></Register>";
    for (const double fRate :
         {0.1, 1e-300, std::nextafter(1.0, 2.0), -2.5e17, std::numeric_limits<double>::infinity()}) {
        CTestMap objFrom(strDescription);
        objFrom.Integer("Width").SetValue(640);
        objFrom.Integer("Address").SetValue(0xC0A80102);
        objFrom.Float("Rate").SetValue(fRate, false);
        objFrom.Boolean("Flip").SetValue(true);
        objFrom.Enumeration("Mode").FromString("Once");
        objFrom.String("Label").SetValue(" left\teye # 1");
        objFrom.Register("Table").FromString("0x0010ff");
        std::stringstream stream;
        gcstring_vector vecError;
        CFeatureBag objBag;
        EXPECT_TRUE(objBag.StoreToBag(objFrom.Map._Ptr, -1, &vecError));
        stream << objBag;
        EXPECT_THAT(stream.str(), HasSubstr("# Device\nWidth\t640\nAddress\t3232235778\nRate\t"));

        CTestMap objTo(strDescription);
        CFeatureBag objRead;
        stream >> objRead;
        EXPECT_TRUE(objRead.LoadFromBag(objTo.Map._Ptr, std::isfinite(fRate), &vecError));
        EXPECT_THAT(TextsOf(vecError), IsEmpty());
        EXPECT_EQ(objTo.Port.BytesAt(0, 59), objFrom.Port.BytesAt(0, 59));
        EXPECT_EQ(objTo.Float("Rate").GetValue(), fRate);
    }
}

TEST(FeatureBag, OnlySettingsThatCanBeReadAndWrittenNowAreStored) {
    CTestMap objMap(
        Feature("Kept", 0) + Feature("NotImplemented", 4, "<ImposedAccessMode>NI</ImposedAccessMode>") +
        Feature("ReadOnly", 8, "<ImposedAccessMode>RO</ImposedAccessMode>") +
        Feature("WriteOnly", 12, "<ImposedAccessMode>WO</ImposedAccessMode>") +
        Feature("Locked", 16, "<pIsLocked>One</pIsLocked>") + "<Integer Name='One'><Value>1</Value></Integer>" +
        "<Integer Name='Plain'><Value>1</Value></Integer>" + Category("Root", {"Kept", "Root"}) +
        "<Command Name='Go'>" + kStreamable + "<pValue>KeptReg</pValue><CommandValue>1</CommandValue></Command>" +
        "<Integer Name='Elsewhere'>" + kStreamable +
        "<pValue>ElsewhereReg</pValue></Integer>"
        "<IntReg Name='ElsewhereReg'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Unconnected</pPort></IntReg><Port Name='Unconnected'/>");
    EXPECT_THAT(Stored(objMap), ElementsAre("Kept=0"));
}

TEST(FeatureBag, AValueThatALineCantHoldIsLeftOutAndNamed) {
    CTestMap objMap("<String Name='Note'>" + kStreamable + "<Value>none</Value></String>" + Feature("Width", 0));
    objMap.String("Note").SetValue("two\nlines");
    CFeatureBag objBag;
    gcstring_vector vecError;
    EXPECT_FALSE(objBag.StoreToBag(objMap.Map._Ptr, -1, &vecError));
    EXPECT_THAT(LinesOf(objBag), ElementsAre("Width=0"));
    EXPECT_THAT(TextsOf(vecError), ElementsAre(HasSubstr("Note: Its value has a line end")));
}

// Order

TEST(FeatureBag, AFeatureComesBehindThoseThatDecideOnIt) {
    const std::string strOnA = "<pIsLocked>AIsOne</pIsLocked>";
    const struct {
        const char* What;
        std::string Description;
        std::vector<std::string> Names;
    } kCases[] = {
        {"categories before the order of nodes, the rest behind",
         Feature("C", 0) + Feature("B", 4) + Feature("A", 8) + Category("Sub", {"B"}) + Category("Root", {"A", "Sub"}),
         {"A", "B", "C"}},
        {"an access mode",
         Feature("B", 0, strOnA) + Feature("A", 4) +
             "<IntSwissKnife Name='AIsOne'><pVariable Name='V'>AReg</pVariable><Formula>V = "
             "1</Formula></IntSwissKnife>",
         {"A", "B"}},
        {"limits", Feature("B", 0, "<pMax>A</pMax>") + Feature("A", 4), {"A", "B"}},
        {"an invalidator, over two steps",
         Feature("C", 0, "<pMax>B</pMax>") + Feature("B", 4, "<pInvalidator>A</pInvalidator>") + Feature("A", 8),
         {"A", "B", "C"}},
        {"limits of each other, and what hangs on them",
         Feature("C", 8, "<pMax>A</pMax>") + Feature("A", 0, "<pMax>B</pMax>") + Feature("B", 4, "<pMax>A</pMax>"),
         {"A", "B", "C"}},
        {"limits of each other in a circle",
         Feature("A", 0, "<pMax>C</pMax>") + Feature("B", 4, "<pMax>A</pMax>") + Feature("C", 8, "<pMax>B</pMax>"),
         {"A", "B", "C"}},
    };
    for (const auto& objCase : kCases) {
        CTestMap objMap(objCase.Description);
        CFeatureBag objBag;
        objBag.StoreToBag(objMap.Map._Ptr);
        EXPECT_THAT(TextsOf(objBag.GetNames()), ElementsAreArray(objCase.Names)) << objCase.What;
    }
}

// Selectors

TEST(FeatureBag, SelectedFeaturesAreStoredForEachValueAndTheSelectorIsPutBack) {
    const std::string strDescription =
        Enumeration("Selector", 0, {"Red", "Green", "Blue"}, Selects({"Gain", "Offset"})) +
        SelectedReg("Gain", 16, {{"SelectorReg", 4}}, kStreamable) +
        SelectedReg("Offset", 32, {{"SelectorReg", 4}}, kStreamable);
    CTestMap objFrom(strDescription);
    for (std::uint32_t i = 0; i < 3; ++i) {
        objFrom.Port.PutNumber(16 + 4 * static_cast<int>(i), 100 + i);
        objFrom.Port.PutNumber(32 + 4 * static_cast<int>(i), 200 + i);
    }
    objFrom.Port.PutNumber(0, 1);
    CFeatureBag objBag;
    EXPECT_TRUE(objBag.StoreToBag(objFrom.Map._Ptr));
    EXPECT_THAT(LinesOf(objBag),
                ElementsAre("Selector=Red", "Gain=100", "Offset=200", "Selector=Green", "Gain=101", "Offset=201",
                            "Selector=Blue", "Gain=102", "Offset=202", "Selector=Green"));
    EXPECT_EQ(objFrom.Port.NumberAt(0), 1U);

    CTestMap objTo(strDescription);
    EXPECT_TRUE(objBag.LoadFromBag(objTo.Map._Ptr));
    EXPECT_EQ(objTo.Port.BytesAt(0, 44), objFrom.Port.BytesAt(0, 44));
}

/// The device keeps a colour for each source, at 8 and 12, and a gain for each of their colours, from 16 on.
class CSourcesMap : public CTestMap {
public:
    CSourcesMap()
        : CTestMap("<IntReg Name='Source'>" + Selects({"Colour"}) +
                   "<Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
                   "<Endianess>LittleEndian</Endianess></IntReg>"
                   "<Integer Name='SourceNumber'><pValue>Source</pValue><Min>0</Min><Max>1</Max></Integer>" +
                   SelectedReg("ColourReg", 8, {{"Source", 4}}) + "<Boolean Name='Colour'>" + Selects({"Gain"}) +
                   "<pValue>ColourReg</pValue></Boolean>" +
                   SelectedReg("Gain", 16, {{"Source", 8}, {"ColourReg", 4}}, kStreamable)) {
        Integer("Source").ImposeMin(0);
        Integer("Source").ImposeMax(1);
        Port.PutNumber(8, 1);
    }
};

// What the walk does to the colours of the other sources has to be undone as well.
TEST(FeatureBag, SelectorsWithinSelectorsAreWalkedAndPutBackOnEachLevel) {
    CSourcesMap objMap;
    for (int i = 0; i < 4; ++i) {
        objMap.Port.PutNumber(16 + 4 * i, static_cast<std::uint32_t>(i));
    }
    const auto vecBefore = objMap.Port.BytesAt(0, 32);
    EXPECT_THAT(Stored(objMap), ElementsAre("Source=0", "Colour=0", "Gain=0", "Colour=1", "Gain=1", "Source=1",
                                            "Colour=0", "Gain=2", "Colour=1", "Gain=3", "Colour=0", "Source=0"));
    EXPECT_EQ(objMap.Port.BytesAt(0, 32), vecBefore);
    EXPECT_THAT(Stored(objMap, 3), ElementsAre("Source=0", "Colour=0", "Gain=0", "Colour=1", "Gain=1", "Source=1",
                                               "Colour=0", "Gain=2", "Source=0"));
    EXPECT_THAT(Stored(objMap, 0), IsEmpty());
    EXPECT_EQ(objMap.Port.BytesAt(0, 32), vecBefore);
}

TEST(FeatureBag, OnlyValuesThatASelectorCanTakeAndAFeatureHasAreStored) {
    const std::string strSwitch =
        "<IntSwissKnife Name='IsB'><pVariable Name='S'>SelectorReg</pVariable><Formula>S = 1</Formula></IntSwissKnife>";
    CTestMap objMap("<Enumeration Name='Selector'>" + Selects({"Gain"}) +
                    "<EnumEntry Name='A'><Value>0</Value></EnumEntry><EnumEntry Name='B'><Value>1</Value></EnumEntry>"
                    "<EnumEntry Name='Gone'><pIsAvailable>Zero</pIsAvailable><Value>2</Value></EnumEntry>"
                    "<EnumEntry Name='D'><Value>3</Value></EnumEntry><pValue>SelectorReg</pValue></Enumeration>"
                    "<Integer Name='Zero'><Value>0</Value></Integer>" +
                    Reg("SelectorReg", 0) + strSwitch +
                    SelectedReg("Gain", 16, {{"SelectorReg", 4}}, "<pIsLocked>IsB</pIsLocked>" + kStreamable));
    EXPECT_THAT(Stored(objMap), ElementsAre("Selector=A", "Gain=0", "Selector=D", "Gain=0", "Selector=A"));

    objMap.Port.PutNumber(0, 2);
    objMap.Node("SelectorReg").InvalidateNode();
    EXPECT_THAT(Stored(objMap), ElementsAre("Selector=A", "Gain=0", "Selector=D", "Gain=0", "Selector=Gone"));
    EXPECT_EQ(objMap.Port.NumberAt(0), 2U) << "it goes back where it was, available or not";
    EXPECT_THAT(Differences(BagOf("Selector\tD\nGain\t0\n"), objMap, nullptr), IsEmpty());
    EXPECT_EQ(objMap.Port.NumberAt(0), 2U);
}

TEST(FeatureBag, SelectorsWithTooManyValuesLeaveThePresentOnes) {
    CTestMap objMap(Feature("Huge", 0, Selects({"Gain", "Black", "Offset"})) +
                    Feature("Small", 4, "<Max>3</Max>" + Selects({"Offset"})) + Feature("Gain", 8) +
                    Feature("Black", 16) + Feature("Offset", 12));
    objMap.Port.PutNumber(0, 77);
    objMap.Port.PutNumber(4, 2);
    CFeatureBag objBag;
    gcstring_vector vecError;
    EXPECT_FALSE(objBag.StoreToBag(objMap.Map._Ptr, -1, &vecError));
    EXPECT_EQ(objMap.Port.TakeWrites(), 0) << "a selector that needn't move stays untouched";
    EXPECT_THAT(LinesOf(objBag),
                ElementsAre("Huge=77", "Small=2", "Huge=77", "Gain=0", "Black=0", "Huge=77", "Small=2", "Offset=0"));
    EXPECT_THAT(TextsOf(vecError), ElementsAre(HasSubstr("Gain: Its selectors"), HasSubstr("Black: Its selectors"),
                                               HasSubstr("Offset: Its selectors")));
    EXPECT_EQ(objMap.Port.NumberAt(0), 77U);
    EXPECT_EQ(objMap.Port.NumberAt(4), 2U);
}

TEST(FeatureBag, SelectorsInACircleOrInALongChainEndTheWalk) {
    CTestMap objCircle(Feature("A", 0, "<Max>1</Max>" + Selects({"B"})) +
                       Feature("B", 4, "<Max>1</Max>" + Selects({"A"})));
    EXPECT_THAT(Stored(objCircle), testing::SizeIs(testing::Lt(12U)));

    std::string strChain;
    for (int i = 0; i < 20; ++i) {
        strChain += Feature("S" + std::to_string(i), 4 * i, "<Max>1</Max>" + Selects({"S" + std::to_string(i + 1)}));
    }
    CTestMap objChain(strChain + Feature("S20", 80));
    CFeatureBag objBag;
    gcstring_vector vecError;
    EXPECT_FALSE(objBag.StoreToBag(objChain.Map._Ptr, -1, &vecError));
    EXPECT_THAT(TextsOf(vecError), testing::Contains(HasSubstr("S20: It has more than 8 selectors")));
    EXPECT_THAT(LinesOf(objBag), testing::Contains("S20=0"));

    // Each of the features asks for the hub's selectors anew, and none of these can stand in a bag.
    std::string strMany;
    std::string strHub;
    for (int i = 0; i < 2000; ++i) {
        strMany += "<Integer Name='#" + std::to_string(i) + "'>" + Selects({"Hub"}) + "</Integer>" +
                   Feature("F" + std::to_string(i), 4 * i);
        strHub += Selects({"F" + std::to_string(i)});
    }
    CTestMap objMany(strMany + Feature("Hub", 9000, strHub));
    EXPECT_THROW(objBag.StoreToBag(objMany.Map._Ptr), GenICam_3_0::RuntimeException);
}

// Comparing

TEST(FeatureBag, NothingIsWrittenUnderAnotherValueOfASelectorThatFailed) {
    CTestMap objMap(Enumeration("Outer", 0, {"X"}, Selects({"Selector"})) +
                    Enumeration("Selector", 4, {"Red"}, Selects({"Gain"})) +
                    SelectedReg("Gain", 16, {{"SelectorReg", 4}}) + Reg("Free", 40));
    gcstring_vector vecError;
    CFeatureBag objBag = BagOf(
        "Selector\tRed\nGain\t5\nSelector\tGreen\nGain\t6\nFree\t7\nSelector\tRed\nGain\t8\n"
        "Outer\tY\nSelector\tRed\nGain\t9\n");
    EXPECT_FALSE(objBag.LoadFromBag(objMap.Map._Ptr, true, &vecError));
    EXPECT_THAT(
        TextsOf(vecError),
        ElementsAre(HasSubstr("'Green'"), "Gain: Selector can't be set to 'Green', which it belongs to",
                    HasSubstr("'Y'"), "Selector: Outer can't be set to 'Y', which it belongs to", HasSubstr("Gain: ")));
    EXPECT_EQ(objMap.Port.NumberAt(16), 8U);
    EXPECT_EQ(objMap.Port.NumberAt(40), 7U);
}

TEST(FeatureBag, DifferencesAreFoundUnderEachSelectorAndNothingIsChanged) {
    CSourcesMap objMap;
    CFeatureBag objBag;
    ASSERT_TRUE(objBag.StoreToBag(objMap.Map._Ptr));
    gcstring_vector vecError;
    EXPECT_THAT(Differences(objBag, objMap, &vecError), IsEmpty());

    CSourcesMap objOther;
    objOther.Port.PutNumber(0, 1);
    objOther.Port.PutNumber(12, 1);
    objOther.Port.PutNumber(20, 5);
    objOther.Port.PutNumber(24, 6);
    const auto vecBefore = objOther.Port.BytesAt(0, 32);
    EXPECT_THAT(Differences(objBag, objOther, &vecError),
                ElementsAre("Gain[Source=0,Colour=1]: 0, 5", "Gain[Source=1,Colour=0]: 0, 6"));
    EXPECT_EQ(objOther.Port.BytesAt(0, 32), vecBefore);
    EXPECT_THAT(TextsOf(vecError), IsEmpty());
}

TEST(FeatureBag, AnotherNotationIsNoDifferenceAndTheLastLineOfASettingCounts) {
    CTestMap objMap(Feature("Address", 0, "<Representation>IPV4Address</Representation>") +
                    "<Float Name='Rate'><pValue>RateReg</pValue></Float><FloatReg Name='RateReg'><Address>8</Address>"
                    "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></FloatReg>"
                    "<Boolean Name='Flip'><pValue>FlipReg</pValue></Boolean>" +
                    Reg("FlipReg", 16) +
                    "<Register Name='Table'><Address>56</Address><Length>2</Length><AccessMode>RO</AccessMode>"
                    "<pPort>Device</pPort></Register>" +
                    Enumeration("Mode", 20, {"Off", "On"}, kStreamable + Selects({"Table"})));
    objMap.Integer("Address").SetValue(0xC0A80102);
    objMap.Float("Rate").SetValue(0.1);
    objMap.Port.PutNumber(56, 0xAB);
    gcstring_vector vecError;
    EXPECT_THAT(Differences(BagOf("Address\t1\nAddress\t192.168.1.2\nRate\t+1e-1\nFlip\tFalse\nTable\tAB00\n"), objMap,
                            &vecError),
                IsEmpty());
    EXPECT_THAT(
        Differences(BagOf("Address\t0xC0A80103\nRate\t0.11\nFlip\ttrue\nMode\tOn\nTable\tAB01\n"), objMap, &vecError),
        ElementsAre("Address[]: 0xC0A80103, 3232235778", HasSubstr("Rate[]: 0.11, 0.1"), "Flip[]: true, 0",
                    "Mode[]: On, Off", "Table[Mode=On]: AB01, 0xab00"));
    EXPECT_EQ(objMap.Port.NumberAt(20), 0U) << "a selector that is a setting comes back too";
    EXPECT_THAT(TextsOf(vecError), IsEmpty());
}

// A value under another setting of its selector is another value.
TEST(FeatureBag, WhatCantBeComparedIsNamed) {
    CTestMap objMap(Enumeration("Selector", 0, {"Red"}, Selects({"Gain"})) + SelectedReg("Gain", 16, {}) +
                    Feature("Hidden", 4, "<ImposedAccessMode>WO</ImposedAccessMode>" + Selects({"Under"})) +
                    Feature("Under", 8));
    gcstring_vector vecError;
    EXPECT_THAT(Differences(BagOf("Selector\tGreen\nGain\t5\nHidden\t1\nUnder\t5\nNone\t1\nSelector\tRed\nGain\t6\n"),
                            objMap, &vecError),
                ElementsAre("Gain[Selector=Red]: 6, 0"));
    EXPECT_THAT(TextsOf(vecError),
                ElementsAre(HasSubstr("'Green'"), "Gain: Selector can't be set to 'Green', which it belongs to",
                            HasSubstr("Hidden"), HasSubstr("Under: Hidden"), HasSubstr("None")));
}

// Failures

TEST(FeatureBag, ErrorsOfSingleFeaturesAreCollectedAndTheOthersAreWritten) {
    const std::string strDescription =
        Feature("Width", 0, "<Max>100</Max>") + Feature("Height", 4) +
        Feature("Fixed", 8, "<ImposedAccessMode>RO</ImposedAccessMode>") + Enumeration("Mode", 12, {"Off"}) +
        Category("Root", {"Width"}) +
        "<Command Name='Reset'><pValue>HeightReg</pValue><CommandValue>1</CommandValue></Command>";
    CFeatureBag objBag =
        BagOf("Width\t101\nNone\t1\nFixed\t1\nMode\tOn\nReset\t1\nRoot\t1\nHeight\tx\nHeight\t5\n\t1\n");
    CTestMap objVerified(strDescription);
    gcstring_vector vecError;
    EXPECT_FALSE(objBag.LoadFromBag(objVerified.Map._Ptr, true, &vecError));
    EXPECT_THAT(TextsOf(vecError),
                ElementsAre(HasSubstr("Width"), "None: There is no such feature", HasSubstr("Fixed"), HasSubstr("'On'"),
                            HasSubstr("Reset: It is a command"), HasSubstr("Root"), HasSubstr("'x'"),
                            HasSubstr("There is no such feature")));
    EXPECT_EQ(objVerified.Port.NumberAt(0), 0U);
    EXPECT_EQ(objVerified.Port.NumberAt(4), 5U);

    CTestMap objUnverified(strDescription);
    EXPECT_FALSE(objBag.LoadFromBag(objUnverified.Map._Ptr, false));
    EXPECT_EQ(objUnverified.Port.NumberAt(0), 101U) << "limits count only where the caller wants them to";
}

TEST(FeatureBag, ADeviceThatHasGoneEndsTheWalk) {
    std::string strDescription;
    std::string strLines;
    for (int i = 0; i < 100; ++i) {
        strDescription += Feature("F" + std::to_string(i), 4 * i);
        strLines += "F" + std::to_string(i) + "\t1\n";
    }
    CTestMap objMap(strDescription);
    CFeatureBag objBag = BagOf(strLines);
    gcstring_vector vecError;
    objMap.Port.FailFromNowOn(true);
    EXPECT_THROW(objBag.LoadFromBag(objMap.Map._Ptr, true, &vecError), std::runtime_error);
    EXPECT_EQ(objMap.Port.TakeWrites(), static_cast<int>(CFeatureErrors::kMaxFailuresInARow));
    EXPECT_EQ(vecError.size(), CFeatureErrors::kMaxFailuresInARow);
    EXPECT_EQ(vecError[0].str(), "F0: the port fails");
    objMap.Port.TakeReads();
    EXPECT_THROW(objBag.StoreToBag(objMap.Map._Ptr), std::runtime_error);
    EXPECT_EQ(objMap.Port.TakeReads(), static_cast<int>(CFeatureErrors::kMaxFailuresInARow));
    EXPECT_EQ(objBag.GetNames().size(), 100U) << "a store that fails leaves the bag as it was";
}

TEST(FeatureBag, CommandsAroundTheWalkAreExecutedWhereADeviceHasBoth) {
    const auto Command = [](const std::string& strName, int nAddress) {
        return "<Command Name='" + strName + "'><pValue>" + strName +
               "Reg</pValue><CommandValue>1</CommandValue></Command>" + Reg(strName + "Reg", nAddress);
    };
    const std::string strStart = Command("DeviceRegistersStreamingStart", 0);
    const std::string strEnd = Command("DeviceRegistersStreamingEnd", 4);
    const std::string strStore =
        Command("DeviceFeaturePersistenceStart", 8) + Command("DeviceFeaturePersistenceEnd", 12);
    CTestMap objBoth(strStart + strEnd + strStore + Feature("Width", 16));
    CFeatureBag objBag = BagOf("Width\t1\n");
    EXPECT_TRUE(objBag.LoadFromBag(objBoth.Map._Ptr));
    EXPECT_EQ(objBoth.Port.BytesAt(0, 13), (std::vector<std::uint8_t>{1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_THAT(Stored(objBoth), ElementsAre("Width=1"));
    EXPECT_EQ(objBoth.Port.NumberAt(8), 1U);
    EXPECT_EQ(objBoth.Port.NumberAt(12), 1U);

    CTestMap objHalf(strStart + Feature("Width", 16));
    EXPECT_TRUE(objBag.LoadFromBag(objHalf.Map._Ptr));
    EXPECT_EQ(objHalf.Port.NumberAt(0), 0U);
}

}  // namespace
}  // namespace GenApi_3_0
