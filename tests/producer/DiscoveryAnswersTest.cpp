// What becomes of cameras' answers, hostile ones too, without a network.

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gev/Address.h"
#include "producer/wire/DeviceText.h"
#include "producer/wire/Discovery.h"
#include "producer/wire/DiscoveryAnswers.h"
#include "tests/producer/ScriptedCamera.h"

namespace {

using gev::MakeIPv4;
using namespace producer;

constexpr std::uint64_t kMac = 0x02'00'00'00'00'00;

ADAPTER MakeAdapter() {
    ADAPTER objAdapter;
    objAdapter.Addresses = {{MakeIPv4(10, 1, 0, 1), 0xFFFFFF00, MakeIPv4(10, 1, 0, 255)},
                            {MakeIPv4(10, 9, 0, 1), 0xFFFF0000, MakeIPv4(10, 9, 255, 255)}};
    return objAdapter;
}

TEST(DeviceText, IsUtf8WithoutControlCharactersWhateverTheCameraSent) {
    const std::string strBad = "\xEF\xBF\xBD";
    const struct {
        std::string_view Sent;
        std::string Shown;
    } arrCases[] = {
        {"plain", "plain"},
        {"trailing  ", "trailing"},
        {"K\xC3\xA4"
         "fer \xE7\x9B\xB8 \xF0\x9F\x93\xB7",
         "K\xC3\xA4"
         "fer \xE7\x9B\xB8 \xF0\x9F\x93\xB7"},
        {"a\nb\x1B[2J\x7F", "a" + strBad + "b" + strBad + "[2J" + strBad},
        {"cut\xE7\x9B", "cut" + strBad + strBad},
        {"\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80\xFF",
         strBad + strBad + strBad + strBad + strBad + strBad + strBad + strBad + strBad + strBad},
        {"\xE2\x80\xAE"
         "turned\xC2\x85",
         strBad + "turned" + strBad},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_EQ(CleanDeviceText(objCase.Sent), objCase.Shown);
    }
}

TEST(DiscoveryAnswers, MarkWhatAUserMustKnow) {
    CDiscoveryAnswers objAnswers(MakeAdapter(), 100);
    auto objTwin = MakeRecord(kMac + 4, MakeIPv4(10, 9, 3, 3));
    objTwin.SerialNumber = gev::CFixedText<16>(std::string_view("A"));
    EXPECT_EQ(objAnswers.AddRecord(MakeRecord(kMac + 1, MakeIPv4(10, 1, 0, 7))), MakeIPv4(10, 1, 0, 7));
    EXPECT_EQ(objAnswers.AddRecord(MakeRecord(kMac + 2, MakeIPv4(10, 1, 0, 7))), 0U);  // asked once
    EXPECT_EQ(objAnswers.AddRecord(MakeRecord(kMac + 3, MakeIPv4(192, 168, 7, 7))), 0U);
    EXPECT_NE(objAnswers.AddRecord(MakeRecord(kMac + 4, MakeIPv4(10, 9, 2, 2))), 0U);
    EXPECT_NE(objAnswers.AddRecord(objTwin), 0U);
    EXPECT_EQ(objAnswers.AddRecord(MakeRecord(kMac + 5, MakeIPv4(10, 1, 0, 255))), 0U);  // nobody's address
    EXPECT_EQ(objAnswers.AddRecord(MakeRecord(kMac + 6, MakeIPv4(10, 1, 0, 8))), MakeIPv4(10, 1, 0, 8));
    EXPECT_EQ(objAnswers.AddRecord(MakeRecord(kMac + 6, MakeIPv4(10, 1, 0, 9))), MakeIPv4(10, 1, 0, 9));  // moved
    objAnswers.AddRecord(MakeRecord(0, MakeIPv4(10, 1, 0, 9)));
    objAnswers.AddRecord(MakeRecord(0x0100'5E00'0001, MakeIPv4(10, 1, 0, 9)));
    objAnswers.AddPrivilege(MakeIPv4(10, 9, 2, 2), gev::EGvcpStatus::AccessDenied, {});
    objAnswers.AddPrivilege(MakeIPv4(10, 9, 99, 9), gev::EGvcpStatus::AccessDenied, {});

    const auto vecDevices = objAnswers.MakeList();
    ASSERT_EQ(vecDevices.size(), 6U);
    EXPECT_TRUE(vecDevices[0].SharesAddress && vecDevices[1].SharesAddress && !vecDevices[2].SharesAddress);
    EXPECT_TRUE(vecDevices[2].IsOutsideSubnet && !vecDevices[3].IsOutsideSubnet);
    EXPECT_EQ(vecDevices[2].AccessStatus, DEVICE_ACCESS_STATUS_NOACCESS);
    EXPECT_TRUE(vecDevices[3].SharesMac);
    EXPECT_FALSE(vecDevices[5].SharesMac);
    EXPECT_EQ(vecDevices[5].Address, MakeIPv4(10, 1, 0, 9));
    EXPECT_EQ(objAnswers.GetRefused(), 3U);
}

TEST(DiscoveryAnswers, KeepABoundedNumberAndCountTheRest) {
    CDiscoveryAnswers objAnswers(MakeAdapter(), 10);
    for (std::uint32_t i = 1; i <= 1000; ++i) {
        objAnswers.AddRecord(MakeRecord(kMac + i, MakeIPv4(10, 9, 0, 1) + i));
    }
    EXPECT_EQ(objAnswers.MakeList().size(), 10U);
    EXPECT_EQ(objAnswers.GetUnanswered().size(), 10U);
    EXPECT_EQ(objAnswers.GetSurplus(), 990U);
    CDiscoveryAnswers objOfOne(MakeAdapter(), 100);
    for (std::uint32_t i = 1; i <= 200; ++i) {
        objOfOne.AddRecord(MakeRecord(kMac, MakeIPv4(10, 9, 0, 1) + i));
    }
    EXPECT_LE(objOfOne.GetUnanswered().size(), 4U) << "whoever names many addresses has not all of them asked";
}

TEST(MergeDevices, DropsACameraOnlyAfterACompleteUpdate) {
    const auto makeDevice = [](std::uint64_t nMac, const char* pName) {
        DISCOVERED_DEVICE objDevice;
        objDevice.Mac = nMac;
        objDevice.UserName = pName;
        return objDevice;
    };
    std::vector<DISCOVERED_DEVICE> vecList = {makeDevice(1, "old"), makeDevice(3, "old")};
    DISCOVERY_RESULT objResult;
    objResult.Devices = {makeDevice(2, "new"), makeDevice(3, "new")};
    objResult.End = DISCOVERY_END::CutShort;
    EXPECT_TRUE(MergeDevices(vecList, objResult));
    EXPECT_EQ(vecList, (std::vector{makeDevice(1, "old"), makeDevice(2, "new"), makeDevice(3, "new")}));
    EXPECT_FALSE(MergeDevices(vecList, objResult));
    objResult.End = DISCOVERY_END::Complete;
    EXPECT_TRUE(MergeDevices(vecList, objResult));
    EXPECT_EQ(vecList, objResult.Devices);
}

}  // namespace
