#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/GCException.h"
#include "GenApi/Node.h"
#include "TLClass/TLClassFeature/FeatureControl.h"
#include "tests/GenApi/TestMap.h"
#include "tests/TLClass/Thrown.h"

/// Reaches what has no caller yet.
class CFeatureControlInspection {
public:
    static bool IsRegistered(const CFeatureControl& objControl, const std::string& strFeature,
                             const IFeatureControl::IFeatureCallbackHandle* pHandle) {
        return objControl.__IsFeatureCallbackRegistered(strFeature, pHandle);
    }
    static bool IsEventControl(const CFeatureControl& objControl, const std::string& strFeature) {
        return objControl.__IsEventControlFeature(strFeature);
    }
};

namespace {

using testing::ElementsAre;

/// Registers that can be made to fail.
class CFaultyPort : public CMemoryPort {
public:
    void Read(void* pBuffer, std::int64_t Address, std::int64_t Length) override {
        Fault();
        CMemoryPort::Read(pBuffer, Address, Length);
    }
    void Write(const void* pBuffer, std::int64_t Address, std::int64_t Length) override {
        Fault();
        CMemoryPort::Write(pBuffer, Address, Length);
    }

    std::function<void()> Fault = [] {};
};

/// Counts its lives and its calls. The clones share the counters.
class CCountingCallback : public IFeatureControl::IFeatureCallback {
public:
    struct COUNTS {
        int nAlive = 0;
        int nCalls = 0;
        std::string strNode;
        std::function<void()> fnThen = [] {};
    };

    explicit CCountingCallback(COUNTS& objCounts) : m_objCounts(objCounts) { ++m_objCounts.nAlive; }
    ~CCountingCallback() override { --m_objCounts.nAlive; }
    void OnFeatureChanged(GenApi_3_0::INode* pNode) override {
        ++m_objCounts.nCalls;
        m_objCounts.fnThen();
        m_objCounts.strNode = pNode->GetName().str();
    }
    IFeatureCallback* Clone() override { return std::make_unique<CCountingCallback>(m_objCounts).release(); }

private:
    COUNTS& m_objCounts;
};

std::string Register(const char* pKind, const char* pName, int nAddress, int nLength, const char* pAccess = "RW") {
    return std::string("<") + pKind + " Name='" + pName + "'><Address>" + std::to_string(nAddress) +
           "</Address><Length>" + std::to_string(nLength) + "</Length><AccessMode>" + pAccess +
           "</AccessMode><pPort>Device</pPort></" + pKind + ">";
}

/// A feature of each kind.
std::string Nodes() {
    return "<Category Name='Root'><pFeature>ImageControl</pFeature><pFeature>EventControl</pFeature>"
           "<pFeature>AlsoInRoot</pFeature></Category>"
           "<Category Name='ImageControl'><pFeature>Width</pFeature></Category>"
           "<Category Name='EventControl'><pFeature>EventGroup</pFeature><pFeature>AlsoInRoot</pFeature></Category>"
           "<Category Name='EventGroup'><pFeature>EventData</pFeature></Category>"
           "<Integer Name='Zero'><Value>0</Value></Integer><Integer Name='AlsoInRoot'><Value>6</Value></Integer>"
           "<Integer Name='EventData'><Value>5</Value></Integer>"
           "<Integer Name='Width'><DisplayName>Width of the image</DisplayName><pValue>WidthReg</pValue><Min>16</Min>"
           "<Max>1024</Max><Inc>16</Inc></Integer>"
           "<Integer Name='NotImplemented'><pIsImplemented>Zero</pIsImplemented><Value>1</Value></Integer>"
           "<Integer Name='NotAvailable'><pIsAvailable>Zero</pIsAvailable><Value>1</Value></Integer>"
           "<Float Name='Gain'><pValue>GainReg</pValue><Min>0.5</Min><Max>10</Max><Unit>dB</Unit></Float>"
           "<Float Name='Rate'><Value>2</Value><Min>0</Min><Max>100</Max><Inc>0.25</Inc><Unit>Hz</Unit></Float>"
           "<Enumeration Name='PixelFormat'><EnumEntry Name='Mono8'><Value>1</Value></EnumEntry>"
           "<EnumEntry Name='Mono16'><pIsAvailable>Zero</pIsAvailable><Value>2</Value></EnumEntry>"
           "<EnumEntry Name='RGB8'><pIsImplemented>Zero</pIsImplemented><Value>3</Value></EnumEntry>"
           "<EnumEntry Name='BayerRG8'><Value>4</Value></EnumEntry><pValue>PixelFormatReg</pValue></Enumeration>"
           "<Boolean Name='ReverseX'><pValue>ReverseXReg</pValue><OnValue>1</OnValue><OffValue>0</OffValue></Boolean>"
           "<Command Name='Start'><pValue>StartReg</pValue><CommandValue>7</CommandValue></Command>" +
           Reg("WidthReg", 0x100) + Register("IntReg", "WriteOnly", 0x104, 4, "WO") +
           Register("IntReg", "ReadOnly", 0x108, 4, "RO") + Register("FloatReg", "GainReg", 0x110, 8) +
           Reg("PixelFormatReg", 0x120) + Reg("ReverseXReg", 0x130) + Register("StringReg", "UserName", 0x140, 16) +
           Register("Register", "Table", 0x160, 8) + Reg("StartReg", 0x170);
}

class FeatureControl : public testing::Test {
protected:
    FeatureControl() {
        EXPECT_TRUE(m_objNodes.Map._Connect(&m_objPort, "Device"));
        m_objPort.PutNumber(0x100, 64);
        m_objPort.Put(0x116, {0xF0, 0x3F});  // Gain: 1.0
        m_objPort.PutNumber(0x120, 1);
        m_objPort.PutText(0x140, "lab 3");
        m_pControl = std::make_unique<CFeatureControl>(&m_objNodes.Map);
    }

    IFeatureControl& Control() { return *m_pControl; }

    CFaultyPort m_objPort;
    CTestMap m_objNodes{Nodes(), false};
    std::unique_ptr<CFeatureControl> m_pControl;
};

struct OPERATION {
    const char* pName;
    bool bSetter;
    const char* pFeature;       // one that it works on
    const char* pWrongFeature;  // one of another type
    std::function<void(IFeatureControl&, const std::string&)> Run;
};

const std::vector<OPERATION>& Operations() {
    static std::array<std::uint8_t, 16> arrBuffer{};
    static std::vector<FEATURE_ENUM_ENTRY> vecEntries;
    static const std::vector<OPERATION> vecOperations = {
        {"DoGetIntRange", false, "Width", "UserName", [](auto& c, auto& s) { c.DoGetIntRange(s); }},
        {"DoGetInt", false, "Width", "UserName", [](auto& c, auto& s) { c.DoGetInt(s); }},
        {"DoSetInt", true, "Width", "UserName", [](auto& c, auto& s) { c.DoSetInt(s, 32); }},
        {"DoGetFloatRange", false, "Gain", "ReverseX", [](auto& c, auto& s) { c.DoGetFloatRange(s); }},
        {"DoGetFloat", false, "Gain", "ReverseX", [](auto& c, auto& s) { c.DoGetFloat(s); }},
        {"DoSetFloat", true, "Gain", "ReverseX", [](auto& c, auto& s) { c.DoSetFloat(s, 2.5); }},
        {"DoGetEnumEntryNums", false, "PixelFormat", "Gain", [](auto& c, auto& s) { c.DoGetEnumEntryNums(s); }},
        {"DoGetEnumDescription", false, "PixelFormat", "Gain",
         [](auto& c, auto& s) { c.DoGetEnumDescription(s, vecEntries); }},
        {"DoGetEnum", false, "PixelFormat", "Gain", [](auto& c, auto& s) { c.DoGetEnum(s); }},
        {"DoSetEnum", true, "PixelFormat", "Gain", [](auto& c, auto& s) { c.DoSetEnum(s, 4); }},
        {"DoGetEnumEntryValue", false, "PixelFormat", "Gain",
         [](auto& c, auto& s) { c.DoGetEnumEntryValue(s, "Mono8"); }},
        {"DoGetBool", false, "ReverseX", "Gain", [](auto& c, auto& s) { c.DoGetBool(s); }},
        {"DoSetBool", true, "ReverseX", "Gain", [](auto& c, auto& s) { c.DoSetBool(s, true); }},
        {"DoGetMaxStringLength", false, "UserName", "Gain", [](auto& c, auto& s) { c.DoGetMaxStringLength(s); }},
        {"DoGetString", false, "UserName", "Gain", [](auto& c, auto& s) { c.DoGetString(s); }},
        {"DoSetString", true, "UserName", "Gain", [](auto& c, auto& s) { c.DoSetString(s, "new"); }},
        {"DoGetBufferLength", false, "Table", "Gain", [](auto& c, auto& s) { c.DoGetBufferLength(s); }},
        {"DoGetBuffer", false, "Table", "Gain", [](auto& c, auto& s) { c.DoGetBuffer(s, 16, arrBuffer.data()); }},
        {"DoSetBuffer", true, "Table", "Gain", [](auto& c, auto& s) { c.DoSetBuffer(s, 8, arrBuffer.data()); }},
        {"DoSendCommand", false, "Start", "Gain", [](auto& c, auto& s) { c.DoSendCommand(s); }},
    };
    return vecOperations;
}

TEST_F(FeatureControl, MissingAndUnimplementedFeaturesAreNamed) {
    for (const auto& objOperation : Operations()) {
        for (const std::string strFeature : {"Nowhere", "NotImplemented"}) {
            EXPECT_EQ(MessageOf<CNotImplementedError>([&] { objOperation.Run(Control(), strFeature); }),
                      "The feature \"" + strFeature + "\" is not implemented")
                << objOperation.pName;
        }
    }
}

TEST_F(FeatureControl, FeatureOfAnotherTypeFailsTheCast) {
    for (const auto& objOperation : Operations()) {
        EXPECT_EQ(MessageOf<CUnexpectedError>([&] { objOperation.Run(Control(), objOperation.pWrongFeature); }),
                  "Dynamic_cast failed")
            << objOperation.pName;
    }
}

TEST_F(FeatureControl, ExceptionsOfTheNodeMapBecomeThoseOfTheFamily) {
    using namespace GenICam_3_0;
    const std::vector<std::string> vecWithoutPort = {
        "DoGetIntRange",       "DoGetFloatRange",      "DoGetEnumEntryNums", "DoGetEnumDescription",
        "DoGetEnumEntryValue", "DoGetMaxStringLength", "DoGetBufferLength"};
    for (const auto& objOperation : Operations()) {
        if (std::find(vecWithoutPort.begin(), vecWithoutPort.end(), objOperation.pName) != vecWithoutPort.end()) {
            continue;
        }
        const auto Run = [&] { objOperation.Run(Control(), objOperation.pFeature); };
        m_objPort.Fault = [] { Throw<AccessException>("access"); };
        EXPECT_EQ(MessageOf<CInvalidAccessError>(Run), "access") << objOperation.pName;
        m_objPort.Fault = [] { Throw<RuntimeException>("running"); };
        EXPECT_EQ(MessageOf<CUnexpectedError>(Run), "running") << objOperation.pName;
        m_objPort.Fault = [] { Throw<InvalidArgumentException>("argument"); };
        EXPECT_EQ(objOperation.bSetter ? MessageOf<CInvalidParameterError>(Run) : MessageOf<CUnexpectedError>(Run),
                  "argument")
            << objOperation.pName;
        m_objPort.Fault = [] { Throw<OutOfRangeException>("range"); };
        EXPECT_EQ(objOperation.bSetter ? MessageOf<COutOfRangeError>(Run) : MessageOf<CUnexpectedError>(Run), "range")
            << objOperation.pName;
        m_objPort.Fault = [] { throw CDeviceOfflineError("gone", "", 0, ""); };
        EXPECT_EQ(MessageOf<CDeviceOfflineError>(Run), "gone") << objOperation.pName;
        m_objPort.Fault = [] {};
    }
}

TEST_F(FeatureControl, ModesOfAFeatureAreAskedOneByOne) {
    const struct {
        const char* pFeature;
        bool bImplemented, bReadable, bWritable;
    } arrCases[] = {
        {"Width", true, true, true},          {"ReadOnly", true, true, false},         {"WriteOnly", true, false, true},
        {"NotAvailable", true, false, false}, {"NotImplemented", false, false, false},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_TRUE(Control().IsFeatureExist(objCase.pFeature));
        EXPECT_EQ(Control().IsFeatureImplemented(objCase.pFeature), objCase.bImplemented) << objCase.pFeature;
        EXPECT_EQ(Control().IsFeatureReadable(objCase.pFeature), objCase.bReadable) << objCase.pFeature;
        EXPECT_EQ(Control().IsFeatureWritable(objCase.pFeature), objCase.bWritable) << objCase.pFeature;
    }
    EXPECT_FALSE(Control().IsFeatureExist("Nowhere"));
    EXPECT_FALSE(Control().IsFeatureImplemented("Nowhere"));
    EXPECT_THROW(Control().IsFeatureReadable("Nowhere"), CNotImplementedError);
    EXPECT_THROW(Control().IsFeatureWritable("Nowhere"), CNotImplementedError);
    EXPECT_THROW(Control().GetFeatureDisplayName("Nowhere"), CNotImplementedError);
    EXPECT_EQ(Control().GetFeatureDisplayName("Width"), "Width of the image");
}

TEST_F(FeatureControl, ValuesGoToTheRegistersAndBack) {
    EXPECT_EQ(Control().DoGetInt("Width"), 64);
    Control().DoSetInt("Width", 0x210);
    EXPECT_EQ(Control().DoGetInt("Width"), 0x210);
    EXPECT_EQ(m_objPort.NumberAt(0x100), 0x210U);
    EXPECT_EQ(Control().DoGetFloat("Gain"), 1.0);
    Control().DoSetFloat("Gain", 2.5);
    EXPECT_EQ(Control().DoGetFloat("Gain"), 2.5);
    EXPECT_EQ(Control().DoGetEnum("PixelFormat"), 1);
    Control().DoSetEnum("PixelFormat", 4);
    EXPECT_EQ(m_objPort.NumberAt(0x120), 4U);
    EXPECT_FALSE(Control().DoGetBool("ReverseX"));
    Control().DoSetBool("ReverseX", true);
    EXPECT_TRUE(Control().DoGetBool("ReverseX"));
    EXPECT_EQ(Control().DoGetString("UserName"), "lab 3");
    Control().DoSetString("UserName", "lab four");
    EXPECT_EQ(Control().DoGetString("UserName"), "lab four");
    EXPECT_EQ(Control().DoGetMaxStringLength("UserName"), 16);
    Control().DoSendCommand("Start");
    EXPECT_EQ(m_objPort.NumberAt(0x170), 7U);
}

TEST_F(FeatureControl, RangesHaveTheirIncrementAndUnit) {
    const FEATURE_INT_RANGE objWidth = Control().DoGetIntRange("Width");
    EXPECT_THAT((std::vector{objWidth.Min, objWidth.Max, objWidth.Inc}), ElementsAre(16, 1024, 16));
    const FEATURE_FLOAT_RANGE objGain = Control().DoGetFloatRange("Gain");
    EXPECT_THAT((std::vector{objGain.Min, objGain.Max, objGain.Inc}), ElementsAre(0.5, 10, 0));
    EXPECT_EQ(objGain.Unit, "dB");
    EXPECT_EQ(objGain.IncIsValid, 0);
    const FEATURE_FLOAT_RANGE objRate = Control().DoGetFloatRange("Rate");
    EXPECT_EQ(objRate.Inc, 0.25);
    EXPECT_EQ(objRate.IncIsValid, 1);
}

TEST_F(FeatureControl, OnlyAvailableEntriesOfAnEnumerationCount) {
    EXPECT_EQ(Control().DoGetEnumEntryNums("PixelFormat"), 2U);
    std::vector<FEATURE_ENUM_ENTRY> vecEntries(1);
    vecEntries[0].Symbolic = "kept";
    Control().DoGetEnumDescription("PixelFormat", vecEntries);
    std::string strAll;
    for (const auto& objEntry : vecEntries) {
        strAll += objEntry.Symbolic + "=" + std::to_string(objEntry.Value) + " ";
    }
    EXPECT_EQ(strAll, "kept=0 Mono8=1 BayerRG8=4 ");
    EXPECT_EQ(Control().DoGetEnumEntryValue("PixelFormat", "Mono16"), 2);
    EXPECT_EQ(MessageOf<CInvalidParameterError>([&] { Control().DoGetEnumEntryValue("PixelFormat", "Mono9"); }),
              "The enumeration feature \"PixelFormat\" does not contain the entry \"Mono9\"");
}

TEST_F(FeatureControl, BuffersHoldAtLeastTheWholeRegister) {
    std::array<std::uint8_t, 10> arrBuffer{};
    arrBuffer.fill(0xEE);
    m_objPort.Put(0x167, {9});
    EXPECT_EQ(Control().DoGetBufferLength("Table"), 8);
    Control().DoGetBuffer("Table", arrBuffer.size(), arrBuffer.data());
    EXPECT_THAT(arrBuffer, ElementsAre(0, 0, 0, 0, 0, 0, 0, 9, 0xEE, 0xEE));
    EXPECT_EQ(MessageOf<CNeedMoreBufferError>([&] { Control().DoGetBuffer("Table", 7, arrBuffer.data()); }),
              "Need more buffer");
    EXPECT_EQ(MessageOf<CInvalidParameterError>([&] { Control().DoGetBuffer("Nowhere", 8, nullptr); }),
              "pBuffer can't be NULL");
    EXPECT_EQ(MessageOf<CInvalidParameterError>([&] { Control().DoSetBuffer("Nowhere", 8, nullptr); }),
              "pBuffer can't be NULL");
    arrBuffer.fill(1);
    Control().DoSetBuffer("Table", 8, arrBuffer.data());
    EXPECT_EQ(m_objPort.NumberAt(0x160), 0x01010101U);
    EXPECT_ANY_THROW(Control().DoSetBuffer("Table", 9, arrBuffer.data()));
    EXPECT_EQ(m_objPort.NumberAt(0x168), 0U);
}

TEST_F(FeatureControl, CloneOfACallbackHearsOfEachChangeUntilItIsUnregistered) {
    CCountingCallback::COUNTS objCounts;
    IFeatureControl::IFeatureCallbackHandle* pHandle = nullptr;
    {
        CCountingCallback objCallback(objCounts);
        pHandle = Control().RegisterFeatureCallback("Width", &objCallback);
        EXPECT_EQ(objCounts.nAlive, 2);
    }
    Control().DoSetInt("Width", 32);
    EXPECT_EQ(objCounts.nCalls, 1);
    EXPECT_EQ(objCounts.strNode, "Width");
    EXPECT_TRUE(CFeatureControlInspection::IsRegistered(*m_pControl, "Width", pHandle));
    EXPECT_FALSE(CFeatureControlInspection::IsRegistered(*m_pControl, "Gain", pHandle));
    objCounts.fnThen = [&] {
        Control().UnregisterFeatureCallback(pHandle);
        EXPECT_EQ(objCounts.nAlive, 1) << "it lives until its own call returns";
    };
    Control().DoSetInt("Width", 48);
    EXPECT_EQ(objCounts.nAlive, 0);
    Control().DoSetInt("Width", 64);
    EXPECT_EQ(objCounts.nCalls, 2);
    EXPECT_FALSE(CFeatureControlInspection::IsRegistered(*m_pControl, "Width", pHandle));
}

TEST_F(FeatureControl, ForeignHandlesAndFailedRegistrationsLeaveNothingBehind) {
    CCountingCallback::COUNTS objCounts;
    CCountingCallback objCallback(objCounts);
    IFeatureControl::IFeatureCallbackHandle objForeign;
    EXPECT_NO_THROW(Control().UnregisterFeatureCallback(&objForeign));
    EXPECT_NO_THROW(Control().UnregisterFeatureCallback(nullptr));
    EXPECT_EQ(MessageOf<CNotImplementedError>([&] { Control().RegisterFeatureCallback("Nowhere", &objCallback); }),
              "The feature \"Nowhere\" is not implemented");
    EXPECT_EQ(objCounts.nAlive, 1);
}

TEST_F(FeatureControl, DestructionUnregistersAllCallbacks) {
    CCountingCallback::COUNTS objCounts;
    CCountingCallback objCallback(objCounts);
    Control().RegisterFeatureCallback("Width", &objCallback);
    Control().RegisterFeatureCallback("Width", &objCallback);
    Control().RegisterFeatureCallback("Gain", &objCallback);
    EXPECT_EQ(objCounts.nAlive, 4);
    m_pControl.reset();
    EXPECT_EQ(objCounts.nAlive, 1);
    CFeatureControl(&m_objNodes.Map).DoSetInt("Width", 32);
    EXPECT_EQ(objCounts.nCalls, 0);
}

TEST_F(FeatureControl, CategoriesTellTheFeaturesOfEvents) {
    const auto IsEventControl = [this](const char* pFeature) {
        return CFeatureControlInspection::IsEventControl(*m_pControl, pFeature);
    };
    EXPECT_TRUE(IsEventControl("EventData"));
    EXPECT_TRUE(IsEventControl("EventGroup"));
    EXPECT_FALSE(IsEventControl("EventControl"));
    EXPECT_FALSE(IsEventControl("AlsoInRoot"));  // the root comes first and ends the search
    EXPECT_FALSE(IsEventControl("Width"));
    EXPECT_FALSE(IsEventControl("Zero"));
    EXPECT_FALSE(IsEventControl("Nowhere"));
}

}  // namespace
