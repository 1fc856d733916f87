#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/GCException.h"
#include "GenApi/NodeMapFactory.h"
#include "GenApi/NodeMapLimits.h"
#include "tests/GenApi/TestMap.h"

namespace {

using namespace GenApi_3_0;
using GenICam_3_0::GenericException;
using GenICam_3_0::RuntimeException;

/// The description of the exception that a load ends in; empty if it doesn't.
std::string Refusal(const std::string& strText) {
    try {
        CNodeMapRef objMap;
        objMap._LoadXMLFromString(strText);
    } catch (const GenericException& e) {
        return e.GetDescription();
    }
    return {};
}

struct BAD {
    std::string Text;
    std::vector<const char*> Says;
};

TEST(BadDescriptions, AreRefusedWithAMessageThatHelps) {
    const auto Wrap = &CTestMap::Wrap;
    const std::vector<BAD> vecBad = {
        {"", {"parse"}},
        {"x\x9C\x4B\x01 compressed", {"parse", "line 1"}},
        {"<RegisterDescription>\n  <Integer Name='A'>\n </Intege>\n</RegisterDescription>", {"line 3, column"}},
        {"<RegisterDescription>\r\n<Integer", {"line 2"}},
        {"<Other/>", {"'Other'", "'RegisterDescription'"}},
        {"<!DOCTYPE x [<!ENTITY a 'b'>]><RegisterDescription/>", {"document type"}},
        {Wrap("<Integer><Value>1</Value></Integer>"), {"Integer", "no name"}},
        {Wrap("<Node Name='" + std::string(kMaxNameLength + 1, 'n') + "'/>"), {"name"}},
        {Wrap("<Integer Name='A'/><Float Name='A'/>"), {"two nodes", "'A'"}},
        {Wrap("<Integer Name='A'>\n<pValue>Missing</pValue></Integer>"),
         {"'A'", "'Missing'", "pValue", "line 2, column 9"}},
        {Wrap("<Integer Name='A'><pValue>C</pValue></Integer><Category Name='C'/>"),
         {"'A'", "'C'", "Category", "number"}},
        {Wrap("<IntReg Name='A'><Length>4</Length><pPort>B</pPort></IntReg><Integer Name='B'/>"),
         {"'A'", "'B'", "Integer", "a Port"}},
        {Wrap("<String Name='A'><pValue>B</pValue></String><Integer Name='B'/>"), {"'A'", "'B'", "StringReg"}},
        {Wrap("<Integer Name='A'><pInvalidator>Missing</pInvalidator></Integer>"), {"'A'", "'Missing'"}},
        {Wrap("<Integer Name='A'><Value>1x</Value></Integer>"), {"'A'", "'1x'", "64-bit integer", "line 1"}},
        {Wrap("<Float Name='A'><Value>1e999</Value></Float>"), {"'A'", "number"}},
        {Wrap("<Float Name='A'><ValidValueSet>2;NaN;1</ValidValueSet></Float>"), {"'A'", "isn't a number"}},
        {Wrap("<Integer Name='A'><Visibility>Everybody</Visibility></Integer>"), {"'A'", "'Everybody'"}},
        {Wrap("<IntReg Name='A'><Address>0x7FFFFFFFFFFFFFFF</Address><Address>1</Address></IntReg>"),
         {"'A'", "address"}},
        {Wrap("<Register Name='A'><Length>-1</Length></Register>"), {"'A'", "length"}},
        {Wrap("<IntReg Name='A'><Length>9</Length></IntReg>"), {"'A'", "9 bytes"}},
        {Wrap("<MaskedIntReg Name='A'><Length>2</Length><Bit>-1</Bit></MaskedIntReg>"), {"'A'", "bit"}},
        {Wrap("<Converter Name='A'/>"), {"'A'", "pValue"}},
        {Wrap("<Integer Name='A'><pValue>B</pValue></Integer><Integer Name='B'><pValue>A</pValue></Integer>"),
         {"circle", "A -> B -> A"}},
        {Wrap("<IntSwissKnife Name='A'><pVariable Name='V'>R</pVariable><Formula>V</Formula></IntSwissKnife>"
              "<IntReg Name='R'><pAddress>A</pAddress><Length>4</Length></IntReg>"),
         {"circle"}},
        {Wrap("<IntSwissKnife Name='A'><pVariable>B</pVariable></IntSwissKnife><Integer Name='B'/>"), {"'A'", "Name"}},
    };
    for (const BAD& objBad : vecBad) {
        const std::string strRefusal = Refusal(objBad.Text);
        EXPECT_NE(strRefusal, "") << objBad.Text;
        for (const char* pPart : objBad.Says) {
            EXPECT_NE(strRefusal.find(pPart), std::string::npos) << strRefusal << "\n  doesn't say " << pPart;
        }
    }
}

TEST(BadDescriptions, OfHostileSizeOrDepthEndSoon) {
    std::string strChain;
    std::string strGroups;
    std::string strElements;
    for (int i = 0; i < 5000; ++i) {
        strChain +=
            "<Integer Name='N" + std::to_string(i) + "'><pValue>N" + std::to_string(i + 1) + "</pValue></Integer>";
        strGroups += "<Group>";
        strElements += "<x>";
    }
    strChain += "<Integer Name='N5000'/>";
    for (int i = 0; i < 5000; ++i) {
        strGroups += "</Group>";
        strElements += "</x>";
    }
    std::string strNodes;
    for (std::size_t i = 0; i <= kMaxNodes; ++i) {
        strNodes += "<Node Name='" + std::to_string(i) + "'/>";
    }
    std::string strTags;
    for (std::size_t i = 0; i <= kMaxTags; ++i) {
        strTags += "<a/>";
    }
    EXPECT_NE(Refusal(CTestMap::Wrap(strChain)).find("chain"), std::string::npos);
    EXPECT_NE(Refusal(CTestMap::Wrap(strGroups)).find("nested"), std::string::npos);
    EXPECT_EQ(Refusal(CTestMap::Wrap(strElements)), "") << "unknown elements are passed over, however deep";
    EXPECT_NE(Refusal(CTestMap::Wrap(strNodes)).find("nodes"), std::string::npos);
    EXPECT_NE(Refusal(CTestMap::Wrap(strTags)).find("tags"), std::string::npos);
    EXPECT_NE(Refusal(CTestMap::Wrap(std::string(kMaxDescriptionSize, ' '))).find("bytes"), std::string::npos);
}

TEST(BadDescriptions, WhoseListsMultiplyEndSoon) {
    std::string strStruct = "<StructReg><Address>0</Address><Length>4</Length>";
    std::string strPolled;
    std::string strCopies;
    std::string strInvalidators;
    for (int i = 0; i < 3000; ++i) {
        const std::string strNumber = std::to_string(i);
        strStruct += "<pInvalidator>N0</pInvalidator><StructEntry Name='E" + strNumber + "'/>";
        strPolled += Reg("N" + strNumber, i * 4, "<PollingTime>1</PollingTime>");
        strCopies += "<pValueCopy>N" + strNumber + "</pValueCopy>";
        strInvalidators += "<pInvalidator>N" + strNumber + "</pInvalidator>";
    }
    EXPECT_NE(Refusal(CTestMap::Wrap(strStruct + "</StructReg>" + strPolled)).find("properties"), std::string::npos);

    // Each of the copies invalidates all that hang on it, and those all the others.
    std::string strHanging;
    for (int i = 0; i < 20; ++i) {
        strHanging += "<Integer Name='H" + std::to_string(i) + "'><Value>1</Value>" + strInvalidators + "</Integer>";
    }
    CTestMap objMap(strPolled + strHanging + "<Integer Name='All'><Value>0</Value>" + strCopies + "</Integer>");
    objMap.Map._Poll(1);
    objMap.Integer("All").SetValue(1);
    EXPECT_EQ(objMap.Port.TakeWrites(), 3000);
}

TEST(BadDescriptions, CantHaveMoreBytesCachedThanAreAllowed) {
    std::string strNodes;
    constexpr int kRegisters = 5;
    for (int i = 0; i < kRegisters; ++i) {
        strNodes += "<Register Name='N" + std::to_string(i) + "'><Address>0</Address><Address>" + std::to_string(i) +
                    "</Address><Length>" + std::to_string(kMaxRegisterLength) +
                    "</Length><pPort>Device</pPort></Register>";
    }
    CTestMap objMap(strNodes, false);
    class CZeroPort : public IPort {
    public:
        EAccessMode GetAccessMode() const override { return RW; }
        void Read(void*, std::int64_t, std::int64_t) override {}
        void Write(const void*, std::int64_t, std::int64_t) override {}
    } objPort;
    objMap.Map._Connect(&objPort, "Device");
    std::vector<std::uint8_t> vecByte(static_cast<std::size_t>(kMaxRegisterLength));
    std::size_t nCached = 0;
    for (int i = 0; i < kRegisters; ++i) {
        const std::string strName = "N" + std::to_string(i);
        objMap.Register(strName.c_str()).Get(vecByte.data(), kMaxRegisterLength);
        nCached += objMap.Value(strName.c_str()).IsValueCacheValid() ? vecByte.size() : 0;
    }
    EXPECT_EQ(nCached, kMaxCachedBytes);
}

TEST(BadDescriptions, WhoseWorkDoublesWithEachNodeEndSoon) {
    std::string strNodes = Reg("N0", 0, "<Cachable>NoCache</Cachable>");
    for (int i = 1; i <= 60; ++i) {
        const std::string strBelow = "N" + std::to_string(i - 1);
        strNodes += "<IntSwissKnife Name='N" + std::to_string(i) + "'><pVariable Name='A'>" + strBelow +
                    "</pVariable><pVariable Name='B'>" + strBelow +
                    "</pVariable><Formula>A + B</Formula></IntSwissKnife>";
    }
    CTestMap objMap(strNodes);
    EXPECT_THROW(objMap.Integer("N60").GetValue(), RuntimeException);
    objMap.Port.PutNumber(0, 3);
    EXPECT_EQ(objMap.Integer("N4").GetValue(), 48);
}

TEST(BadDescriptions, WhoseLimitsHangOnEachOtherEndWhenAsked) {
    CTestMap objMap(
        "<Integer Name='A'><Value>1</Value><pMax>MaxOfB</pMax></Integer>"
        "<Integer Name='B'><Value>1</Value><pMax>MaxOfA</pMax></Integer>"
        "<IntSwissKnife Name='MaxOfA'><pVariable Name='V.Max'>A</pVariable><Formula>V.Max</Formula></IntSwissKnife>"
        "<IntSwissKnife Name='MaxOfB'><pVariable Name='V.Max'>B</pVariable><Formula>V.Max</Formula></IntSwissKnife>");
    EXPECT_EQ(objMap.Integer("A").GetValue(), 1);
    EXPECT_THROW(objMap.Integer("A").GetMax(), RuntimeException);
    EXPECT_THROW(objMap.Integer("A").SetValue(1), RuntimeException);
    EXPECT_NO_THROW(objMap.Integer("A").SetValue(2, false));
    EXPECT_EQ(objMap.Integer("A").GetValue(), 2);
}

TEST(Descriptions, AreReadInTheFormsThatRealOnesHave) {
    const std::string strBody =
        "<!-- c --><RegisterDescription><Vendor><Integer Name='Hidden'/></Vendor>"
        "<Integer Name='\n A '><Extension><Value>9</Value></Extension><VendorThing/>"
        "<Value> \r\n 0x1f <!-- c --></Value><ToolTip/><pValueX>Z</pValueX><Max></Max><pInvalidator> "
        "A\n</pInvalidator></Integer>"
        "<IntKey Name='Key'/><ConfRom Name='Rom'/><TextDesc Name='Text'/><Integer "
        "Name='OnKey'><pValue>Key</pValue></Integer>"
        "</RegisterDescription>\n";
    std::string strWide;
    for (const char c : strBody) {
        strWide += c;
        strWide += '\0';
    }
    for (const std::string& strText :
         {strBody, "\xEF\xBB\xBF" + strBody, "<?xml version='1.0' encoding='utf-8'?>\n" + strBody,
          "<?xml version='1.0' encoding='ISO-8859-1'?>" + strBody, "\xFF\xFE" + strWide, strWide}) {
        CNodeMapRef objMap;
        objMap._LoadXMLFromString(strText);
        EXPECT_EQ(CIntegerPtr(objMap._GetNode("A"))->GetValue(), 31);
        EXPECT_EQ(objMap._GetNode("Hidden"), nullptr);
        EXPECT_EQ(objMap._GetNode("OnKey")->GetAccessMode(), NI);
    }
    CNodeMapRef objLatin;
    objLatin._LoadXMLFromString(
        "<?xml version='1.0' encoding='ISO-8859-1'?><RegisterDescription><Node Name='N'>"
        "<ToolTip>\xB5s</ToolTip></Node></RegisterDescription>");
    EXPECT_EQ(objLatin._GetNode("N")->GetToolTip(), "\xC2\xB5s");
}

TEST(NodeMapReferences, HoldOneMap) {
    CNodeMapRef objMap("Name");
    EXPECT_THROW(objMap._GetNode("A"), RuntimeException);
    EXPECT_THROW(objMap._LoadXMLFromString("<"), RuntimeException);
    for (const char* pFile : {"/nowhere", "/", "/dev/zero"}) {
        EXPECT_THROW(objMap._LoadXMLFromFile(pFile), RuntimeException) << pFile;
    }
    objMap._LoadXMLFromString("<RegisterDescription><Node Name='A'/></RegisterDescription>");
    EXPECT_EQ(objMap._GetNode("A")->GetDeviceName(), "Name");
    try {
        objMap._LoadXMLFromString("<RegisterDescription/>");
        ADD_FAILURE();
    } catch (const RuntimeException& e) {
        EXPECT_STREQ(e.GetDescription(), "Node map already created");
    }
}

}  // namespace
