// What a camera keeps when it is switched off.

#include <array>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "camera/CameraState.h"
#include "camera/StateFile.h"
#include "tests/TLClass/TemporaryDirectory.h"
#include "tests/camera/EngineOnTable.h"

namespace {

using camera::CStateError;
using gev::EGvcpStatus;

class CameraState : public testing::Test {
protected:
    camera::CAMERA_CONFIGURATION Configure() {
        auto objConfiguration = CEngineOnTable::Configure({});
        objConfiguration.UserName = "as new";
        objConfiguration.Persistent = camera::ParseIPSetting("10.0.0.7/24");
        objConfiguration.Keep = [this](std::string_view strText) {
            Kept = strText;
            ++KeptCount;
            return Safe;
        };
        return objConfiguration;
    }
    /// How often it was kept since the last call.
    int TakeKeptCount() { return std::exchange(KeptCount, 0); }

    std::string Kept;
    int KeptCount = 0;
    bool Safe = true;
};

TEST_F(CameraState, IsKeptWithEachOfItsChangesAndComesBack) {
    CEngineOnTable objFirst(Configure());
    objFirst.TakeControl();
    // 1.2 Hz, which has no short form
    EXPECT_EQ(objFirst.Write({{0xA110, 640}, {0xA210, 0x3F99999A}, {0xA224, 1}}).Status, EGvcpStatus::Success);
    EXPECT_EQ(TakeKeptCount(), 0) << "none of it is in a set";
    objFirst.Write({{0xA800, 2}, {0xA808, 1}});
    EXPECT_EQ(TakeKeptCount(), 1) << "a saved set";
    objFirst.Write({{0xA80C, 2}});
    EXPECT_EQ(TakeKeptCount(), 1) << "the default set";
    std::array<std::byte, 16> arrName{};
    for (std::size_t i = 0; i < arrName.size(); ++i) {
        arrName[i] = static_cast<std::byte>(" \n\\x\xFF end here "[i]);
    }
    objFirst.WriteMemory(0x00E8, arrName);
    EXPECT_EQ(TakeKeptCount(), 1) << "the name, once for all of it";
    objFirst.Write({{0x064C, 0x0A000009}, {0x065C, 0xFFFF0000}, {0x066C, 0x0A0000FE}, {0x0014, 1}});
    EXPECT_EQ(TakeKeptCount(), 4) << "the address";

    auto objConfiguration = Configure();
    objConfiguration.IP.reset();
    objConfiguration.State = Kept;
    CEngineOnTable objSecond(objConfiguration);
    EXPECT_EQ(objSecond.Engine.GetDevice().GetState(), objFirst.Engine.GetDevice().GetState());
    EXPECT_EQ(objSecond.Address, 0x0A000009u) << "and not the one that was given with the state";
    EXPECT_EQ(objSecond.Value(0xA110), 640u) << "of the set that is loaded when it starts";
    EXPECT_EQ(objSecond.Value(0xA210), 0x3F99999Au);
    EXPECT_EQ(objSecond.Value(0xA224), 1u);
    EXPECT_EQ(TakeKeptCount(), 0);

    Safe = false;
    objSecond.TakeControl();
    EXPECT_EQ(objSecond.Write({{0xA80C, 0}}).Status, EGvcpStatus::Error) << "it will be lost";
    EXPECT_EQ(objSecond.Write({{0xA80C, 9}}).Status, EGvcpStatus::InvalidParameter);
    EXPECT_EQ(TakeKeptCount(), 1);
}

TEST_F(CameraState, ADamagedOneIsRefusedWithItsLine) {
    const camera::CAMERA_STATE objFresh = CEngineOnTable(Configure()).Engine.GetDevice().GetState();
    const std::string strGood = camera::FormatState(objFresh);
    struct CASE {
        const char* Old;  // what is replaced in it
        const char* New;
        const char* Error;  // nullptr: it is good
    };
    const CASE arrCase[] = {
        {"UserSetDefault Default\n", "", nullptr},
        {"LUTValue[255] 255\n", "", nullptr},
        {"state 1", "state 2", "line 1: this is no state"},
        {"\nend\n", "\nend", "it ends too early"},
        {"\nend\n", "\nend\nend\n", "there is more behind its end"},
        {"[UserSet0]\n", "", "line 8: nothing that is kept is called 'DeviceIndicatorMode'"},
        {"DeviceUserID as new", "DeviceUserID as\\x0", "'as\\x0' is no value of DeviceUserID"},
        {"DeviceUserID as new", "DeviceUserID 12345678901234567", "is no value of DeviceUserID"},
        {"PersistentIP 1", "PersistentIP 2", "'2' is no value of GevCurrentIPConfigurationPersistentIP"},
        {"IPAddress 10.0.0.7", "IPAddress 10.0.0.256", "line 4: '10.0.0.256' is no value"},
        {"Default Default", "Default UserSet2", "'UserSet2' is no value of UserSetDefault"},
        {"Width 1280", "Width 1280 ", "'1280 ' is no value of Width"},
        {"Width 1280", "Width 1281", "UserSet0: not within its limits: Width"},
        {"OffsetX 0", "OffsetX 8", "UserSet0: not within its limits: Width"},
        {"Width 1280", "Depth 1280", "nothing in a user set is called 'Depth'"},
        {"Width 1280", "Width 640\nWidth 1280", "Width stands there a second time"},
        {"TriggerMode[1]", "TriggerMode[2]", "nothing in a user set is called 'TriggerMode[2]'"},
        {"AcquisitionFrameRate 25", "AcquisitionFrameRate nan", "UserSet0: not within its limits"},
        {"PixelFormat Mono8", "PixelFormat Mono9", "'Mono9' is no value of PixelFormat"},
    };
    for (const CASE& objCase : arrCase) {
        SCOPED_TRACE(objCase.New);
        auto objConfiguration = Configure();
        std::string strText = strGood;
        ASSERT_NE(strText.find(objCase.Old), std::string::npos);
        objConfiguration.State =
            strText.replace(strText.find(objCase.Old), std::string(objCase.Old).size(), objCase.New);
        try {
            CEngineOnTable objTable(objConfiguration);
            EXPECT_EQ(objCase.Error, nullptr);
            EXPECT_EQ(objTable.Engine.GetDevice().GetState(), objFresh);
        } catch (const CStateError& objError) {
            EXPECT_NE(std::string(objError.what()).find(objCase.Error != nullptr ? objCase.Error : "nothing"),
                      std::string::npos)
                << objError.what();
        }
    }
}

TEST_F(CameraState, LiesInAFileThatIsReplacedAsAWhole) {
    const CTemporaryDirectory objFolder;
    const std::string strFolder = objFolder.MakeDirectory("kept");
    const camera::CStateFile objFile(strFolder + "/state");
    EXPECT_FALSE(objFile.Read());
    objFile.Write("one, and longer than the other");
    objFile.Write("two");
    EXPECT_EQ(objFile.Read(), "two");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(strFolder), {}), 1) << "nothing else is left";
    objFile.Write(std::string(camera::CStateFile::kLongest + 1, 'x'));
    EXPECT_THROW(objFile.Read(), CStateError) << "too long";
    EXPECT_THROW(camera::CStateFile{strFolder}, CStateError) << "no file";
    EXPECT_THROW(camera::CStateFile(strFolder + "/none/state"), CStateError) << "no such folder";
    std::filesystem::remove_all(strFolder);
    EXPECT_THROW(objFile.Write("three"), CStateError);
}

}  // namespace
