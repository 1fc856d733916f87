#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/Command.h"
#include "GenApi/Enumeration.h"
#include "GenApi/FeatureBag.h"
#include "GenApi/Float.h"
#include "GenApi/Integer.h"
#include "GenApi/Node.h"
#include "GenApi/NodeMapRef.h"
#include "GenApi/Pointer.h"
#include "GenApi/Port.h"
#include "GenApi/Value.h"
#include "TLClass/TLClassXML/XMLArchive.h"
#include "TLClass/TLClassXML/XMLUrl.h"
#include "camera/FeatureTable.h"
#include "tests/camera/EngineOnTable.h"

namespace {

using namespace GenApi_3_0;

/// The camera's memory by its own protocol, from a host that has control.
class CEnginePort : public IPort {
public:
    explicit CEnginePort(CEngineOnTable& objEngine) : m_objEngine(objEngine) {}

    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* pBuffer, std::int64_t nAddress, std::int64_t nLength) override {
        for (std::int64_t nDone = 0; nDone < nLength;) {
            const auto nPart = std::min<std::int64_t>(nLength - nDone, 536);
            const auto objAnswer = m_objEngine.ReadMemory(static_cast<std::uint32_t>(nAddress + nDone),
                                                          static_cast<std::uint16_t>((nPart + 3) / 4 * 4));
            Check(objAnswer, nAddress);
            std::memcpy(static_cast<char*>(pBuffer) + nDone, objAnswer.Payload.data() + 4,
                        static_cast<std::size_t>(nPart));
            nDone += nPart;
        }
    }
    void Write(const void* pBuffer, std::int64_t nAddress, std::int64_t nLength) override {
        const std::span arrData(static_cast<const std::byte*>(pBuffer), static_cast<std::size_t>(nLength));
        Check(m_objEngine.WriteMemory(static_cast<std::uint32_t>(nAddress), arrData), nAddress);
    }

private:
    static void Check(const CEngineOnTable::ANSWER& objAnswer, std::int64_t nAddress) {
        if (objAnswer.Status != gev::EGvcpStatus::Success) {
            throw std::runtime_error(std::to_string(nAddress) + ": " + std::string(gev::GetText(objAnswer.Status)));
        }
    }

    CEngineOnTable& m_objEngine;
};

class Description : public testing::Test {
protected:
    Description() {
        Engine.TakeControl();
        std::vector<char> vecArchive(static_cast<std::size_t>(Url().Length));
        Port.Read(vecArchive.data(), static_cast<std::int64_t>(Url().Address),
                  static_cast<std::int64_t>(vecArchive.size()));
        std::vector<char> vecText;
        EXPECT_TRUE(UnpackXMLBuffer(vecArchive, vecText));
        Map._LoadXMLFromString(gcstring(std::string(vecText.begin(), vecText.end()).c_str()));
        Map._Connect(&Port, "Device");
    }

    XML_LOCAL_INFO Url() {
        std::string strUrl(512, '\0');
        Port.Read(strUrl.data(), 0x0200, 512);
        return AnalyzeXMLUrl(strUrl.c_str()).Local;
    }
    template <class T>
    T& As(std::string_view strName) {
        return *CPointer<T>(Map._FindNode(strName));
    }
    std::string Text(std::string_view strName) { return As<IValue>(strName).ToString().c_str(); }

    CEngineOnTable Engine;
    CEnginePort Port{Engine};
    CNodeMapRef Map;
};

TEST_F(Description, EveryFeatureIsReadAndWrittenBackAsItsRegisterAllows) {
    for (const camera::FEATURE& objFeature : camera::ListFeatures()) {
        SCOPED_TRACE(objFeature.Name);
        const EAccessMode eAccess = As<INode>(objFeature.Name).GetAccessMode();
        if (objFeature.Access == camera::EAccess::WriteOnly) {
            EXPECT_EQ(eAccess, WO);
            continue;
        }
        EXPECT_EQ(eAccess, objFeature.Access == camera::EAccess::ReadOnly ? RO : RW);
        const std::string strValue = Text(objFeature.Name);
        // The value that every register has at first is one that the camera takes.
        if (eAccess == RW && objFeature.Name != "GevCCP") {
            EXPECT_NO_THROW(As<IValue>(objFeature.Name).FromString(strValue.c_str()));
            EXPECT_EQ(Text(objFeature.Name), strValue);
        }
    }
    for (const char* pName : {"EventExposureEnd", "EventFrameTrigger"}) {
        EXPECT_EQ(As<INode>(pName).GetAccessMode(), RO) << pName;
    }
    EXPECT_EQ(Text("GevVersionMajor") + "." + Text("GevVersionMinor"), "2.0");
    EXPECT_EQ(Text("DeviceModelName"), "Virtual GigE");
    EXPECT_EQ(Text("DeviceSerialNumber"), "020000123456");
    EXPECT_EQ(As<IInteger>("GevCurrentIPAddress").GetValue(), Engine.kAddress);
    EXPECT_EQ(Text("GevCCP"), "ControlAccess");
    EXPECT_EQ(Text("GevCurrentIPConfigurationLLA"), "1");
    As<IValue>("GevCurrentIPConfigurationPersistentIP").FromString("1");
    EXPECT_EQ(Engine.Value(0x0014), 5u);
    EXPECT_EQ(As<IInteger>("GevTimestampTickFrequency").GetValue(), 1'000'000'000);
}

TEST_F(Description, AHostileOneIsHostileInTheWayThatWasAskedFor) {
    const auto unpack = [&] {
        const XML_LOCAL_INFO objUrl = Url();
        std::string strText(static_cast<std::size_t>(objUrl.Length), '\0');
        Port.Read(strText.data(), static_cast<std::int64_t>(objUrl.Address), static_cast<std::int64_t>(objUrl.Length));
        std::string strContent;
        return InflateZipEntry(strText, strContent) ? strContent : "";
    };
    const auto set = [&](const char* pKind) {
        camera::FAULTS objFaults;
        camera::SetFault(objFaults, std::string("hostile-description=") + pKind);
        Engine.Engine.SetFaults(objFaults, Engine.Now);
    };
    set("length");
    EXPECT_EQ(Url().Length, 0xFFFFFFFCu);
    set("url");
    EXPECT_ANY_THROW(Url());
    set("unreadable");
    EXPECT_ANY_THROW(unpack());
    for (const char* pKind : {"zip", "bomb"}) {
        set(pKind);
        EXPECT_EQ(unpack(), "") << pKind;
    }
    set("xml");
    CNodeMapRef objBroken;
    EXPECT_ANY_THROW(objBroken._LoadXMLFromString(gcstring(unpack().c_str())));
    Engine.Engine.SetFaults({}, Engine.Now);
    EXPECT_TRUE(unpack().ends_with("</RegisterDescription>\n"));
}

TEST_F(Description, NoTwoRegistersLieInTheSamePlace) {
    std::map<std::uint32_t, std::string_view> mapTaken;
    for (const camera::FEATURE& objFeature : camera::ListFeatures()) {
        for (std::uint32_t i = objFeature.Address; i < objFeature.GetEnd() && !objFeature.IsPart(); i += 4) {
            EXPECT_TRUE(mapTaken.emplace(i, objFeature.Name).second) << mapTaken[i] << " and " << objFeature.Name;
        }
    }
}

TEST_F(Description, SizesFollowEachOther) {
    EXPECT_EQ(As<IInteger>("PayloadSize").GetValue(), 1280 * 1024);
    As<IInteger>("Width").SetValue(640);
    As<IInteger>("OffsetX").SetValue(320);
    EXPECT_EQ(As<IInteger>("Width").GetMax(), 960);
    EXPECT_EQ(As<IInteger>("OffsetX").GetMax(), 640);
    EXPECT_EQ(Engine.Write({{0xA110, 968}}).Status, gev::EGvcpStatus::InvalidParameter) << "the camera itself as well";
    As<IEnumeration>("PixelFormat").FromString("Mono12Packed");
    EXPECT_EQ(As<IInteger>("PayloadSize").GetValue(), 640 * 1024 * 3 / 2);
    As<IValue>("ChunkModeActive").FromString("1");
    As<IEnumeration>("ChunkSelector").FromString("Timestamp");
    As<IValue>("ChunkEnable").FromString("1");
    EXPECT_EQ(As<IInteger>("PayloadSize").GetValue(), 640 * 1024 * 3 / 2 + 8 + 16);
}

TEST_F(Description, SelectorsLeadToRegistersOfTheirOwn) {
    As<IEnumeration>("TriggerSelector").FromString("AcquisitionStart");
    As<IEnumeration>("TriggerMode").FromString("On");
    As<IEnumeration>("TriggerSelector").FromString("FrameStart");
    EXPECT_EQ(Text("TriggerMode"), "Off");
    As<IInteger>("LUTIndex").SetValue(200);
    EXPECT_EQ(As<IInteger>("LUTValue").GetValue(), 200);
    As<IEnumeration>("DeviceTemperatureSelector").FromString("Mainboard");
    EXPECT_EQ(Text("DeviceTemperature"), "38");
}

TEST_F(Description, UserSetsAndAFileOfFeaturesBringBackWhatTheyTook) {
    As<IFloat>("ExposureTime").SetValue(1234.5);
    As<IInteger>("Width").SetValue(320);
    EXPECT_ANY_THROW(As<ICommand>("UserSetSave").Execute()) << "the default set stays as it is";
    As<IEnumeration>("UserSetSelector").FromString("UserSet1");
    As<ICommand>("UserSetSave").Execute();
    CFeatureBag objBag;
    gcstring_vector vecError;
    EXPECT_TRUE(objBag.StoreToBag(Map._Ptr, -1, &vecError)) << (vecError.empty() ? "" : vecError[0].c_str());

    As<IEnumeration>("UserSetSelector").FromString("Default");
    As<ICommand>("UserSetLoad").Execute();
    EXPECT_EQ(Text("ExposureTime"), "5000");
    EXPECT_EQ(Text("Width"), "1280");
    EXPECT_TRUE(objBag.LoadFromBag(Map._Ptr, true, &vecError)) << (vecError.empty() ? "" : vecError[0].c_str());
    EXPECT_EQ(Text("ExposureTime"), "1234.5");
    EXPECT_EQ(Text("Width"), "320");

    As<IFloat>("ExposureTime").SetValue(99);
    As<IEnumeration>("UserSetDefault").FromString("UserSet1");
    As<ICommand>("DeviceReset").Execute();
    EXPECT_EQ(Engine.Address, 0u);
    Engine.Pass(std::chrono::seconds(1));
    Map._InvalidateNodes();
    EXPECT_EQ(Text("ExposureTime"), "1234.5");
}

TEST_F(Description, WhatShapesImagesIsLockedWhileTheyAreTaken) {
    As<ICommand>("AcquisitionStart").Execute();
    EXPECT_EQ(Engine.Write({{0xA110, 640}}).Status, gev::EGvcpStatus::AccessDenied);
    EXPECT_EQ(Engine.Write({{0xA300, 0x40000000}}).Status, gev::EGvcpStatus::Success) << "the gain shapes nothing";
    As<ICommand>("AcquisitionStop").Execute();
    EXPECT_EQ(Engine.Write({{0xA110, 640}}).Status, gev::EGvcpStatus::Success);
    As<IInteger>("TLParamsLocked").SetValue(1);
    EXPECT_EQ(As<INode>("Width").GetAccessMode(), RO);
}

}  // namespace
