#include <algorithm>
#include <string>
#include <vector>

#include <boost/pointer_cast.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/SpecialDeviceReply.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/Thrown.h"
#include "tests/TLClass/TreeFixture.h"

namespace {

using ProducerDouble::ANSWER;
using ProducerDouble::BYTES;
using ProducerDouble::Ipv4;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kIP = "192.168.1.10";  // that of the first camera of the first adapter

using GevInterface = CAdapterTest;

void Put(CSpecialDeviceReply& objReply, std::size_t nOffset, const std::vector<int>& vecByte) {
    std::transform(vecByte.begin(), vecByte.end(), objReply.GetBuffer() + nOffset,
                   [](int nByte) { return static_cast<std::uint8_t>(nByte); });
}

TEST(SpecialDeviceReply, ReadsEachFieldFromItsPlace) {
    CSpecialDeviceReply objReply;
    std::fill_n(objReply.GetBuffer(), CSpecialDeviceReply::kSize, std::uint8_t{'x'});  // no text has an end
    Put(objReply, 16, {0x34, 0x92});
    Put(objReply, 18, {0xFE, 0x01, 0x02, 0x03, 0x04, 0xAB});
    Put(objReply, 60, {255, 255, 254, 0});
    Put(objReply, 76, {200, 0, 0, 1});
    Put(objReply, 112, {'E', 'y', 'e', 0});
    const DEV_MODULE_INFO objInfo = objReply.GetDeviceInfo("10.0.0.300");
    EXPECT_EQ(objInfo.Model, "Eye");
    EXPECT_EQ(objInfo.Vendor, std::string(32, 'x'));
    EXPECT_EQ(objInfo.ID, "Eye(FE-01-02-03-04-AB)");
    EXPECT_EQ(objInfo.DisplayName, "Eye(10.0.0.300[FE-01-02-03-04-AB])");
    EXPECT_EQ(objInfo.TLType, "GEV");
    EXPECT_EQ(objInfo.AccessStatus, 0x9234) << "the one number with its low byte first";
    EXPECT_TRUE(objInfo.IDValid && objInfo.VendorValid && objInfo.ModelValid && objInfo.TLTypeValid &&
                objInfo.DisplayNameValid && objInfo.AccessStatusValid);

    const COMMON_DEVICE_INFO objCommon = objReply.GetCommonInfo();
    EXPECT_EQ(objCommon.Version, std::string(32, 'x'));
    EXPECT_EQ(objCommon.SerialNumber, std::string(16, 'x'));
    EXPECT_EQ(objCommon.UserID, std::string(16, 'x')) << "the last field ends with the reply";
    EXPECT_TRUE(objCommon.VersionValid && objCommon.SerialNumberValid && objCommon.UserIDValid);

    const GEV_DEV_INFO objGev = objReply.GetGevInfo("10.0.0.300");
    EXPECT_EQ(objGev.IPAddress, Ipv4(10, 0, 1, 44)) << "what was asked for, however odd";
    EXPECT_EQ(objGev.SubnetMask, Ipv4(255, 255, 254, 0));
    EXPECT_EQ(objGev.MACAddress, 0xFE01020304AB);
    EXPECT_EQ(objGev.Gateway, Ipv4(200, 0, 0, 1));
    EXPECT_TRUE(objGev.IPAddressValid && objGev.SubnetMaskValid && objGev.MACAddressValid && objGev.GatewayValid);
}

TEST_F(GevInterface, BringsInADeviceThatNoUpdateFinds) {
    Adapter().Plug("cam-1").Hide().Identity("Maker", "Eye", "SN-7").UserId("left");
    EXPECT_FALSE(m_pInterface->DoCreateSpecialDevice("192.168.1.99"));
    EXPECT_THAT(m_pInterface->GetDeviceList(), IsEmpty());
    ASSERT_TRUE(m_pInterface->DoCreateSpecialDevice(kIP));
    const auto pDevice = Device(0);
    EXPECT_TRUE(pDevice->IsSpecialDevice());
    EXPECT_EQ(pDevice->GetSpecialDeviceIP(), kIP);
    EXPECT_EQ(pDevice->GetDeviceInformation().ID, "Eye(02-10-00-01-00-00)");
    EXPECT_EQ(pDevice->GetCommonInformation().UserID, "left");
    EXPECT_EQ(pDevice->GetGevDevInfo().IPAddress, Ipv4(192, 168, 1, 10));
    Update();
    EXPECT_EQ(Device(0), pDevice);

    EXPECT_TRUE(m_pInterface->DoCreateSpecialDevice(kIP));
    EXPECT_THAT(m_pInterface->GetDeviceList(), SizeIs(2)) << "it doesn't look whether the address is listed";
}

TEST_F(GevInterface, RefreshesSpecialDevicesAndDropsThoseThatDontAnswer) {
    Adapter().Plug("cam-1").Hide();
    Adapter().Plug("cam-2").Hide();
    Adapter().Plug("cam-3");
    Update();
    ASSERT_TRUE(m_pInterface->DoCreateSpecialDevice("192.168.1.10"));
    ASSERT_TRUE(m_pInterface->DoCreateSpecialDevice("192.168.1.11"));
    const auto pFirst = Device(1);
    Double().Device("cam-1").UserId("renamed");
    Double().Unplug("cam-2");
    Double().ClearCalls();
    CCollectedLog objLog;
    m_pInterface->DoUpdateAllSpecialDevices();
    EXPECT_THAT(IDsOf(m_pInterface->GetDeviceList()), ElementsAre("cam-3", "Double(02-10-00-01-00-00)"));
    EXPECT_EQ(Device(1), pFirst);
    EXPECT_EQ(pFirst->GetCommonInformation().UserID, "renamed");
    EXPECT_EQ(Double().Count("IFUpdateSpecialDevice"), 2U) << "only special devices are asked for";
    EXPECT_THAT(objLog.Take(), ElementsAre(HasSubstr("'CInterface::DoUpdateSpecialDevice':no device answers")));
}

TEST_F(GevInterface, NeverGivesAProducerMoreRoomThanThereIs) {
    Adapter().Plug("cam-1").Hide();
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(m_pInterface->DoCreateSpecialDevice(kIP));
    }
    Double().ClearCalls();
    // The first answer claims to be longer than the buffer, the second shorter.
    Double().On("IFUpdateSpecialDevice").Call(1).Answer(ANSWER::Bytes(BYTES(256)).ReportingAs(100000));
    Double().On("IFUpdateSpecialDevice").Call(2).Answer(ANSWER::Bytes(BYTES(200)));
    m_pInterface->DoUpdateAllSpecialDevices();
    std::vector<std::string> vecSize;
    for (const auto& objCall : Double().CallsOf("IFUpdateSpecialDevice")) {
        vecSize.push_back(objCall.vecArgument.back());
    }
    EXPECT_THAT(vecSize, ElementsAre("256", "256", "200"));
    EXPECT_EQ(Device(1)->GetDeviceInformation().DisplayName, std::string("(") + kIP + "[00-00-00-00-00-00])")
        << "what a short answer leaves out is 0, not the answer before";
}

TEST_F(GevInterface, MakesRoomForADeviceOpenedByItsAddress) {
    Adapter().Plug("cam-1");
    Update();
    const auto pListed = Device(0);
    Double().On("IFOpenDevice").Call(1).Fail(GC_ERR_ACCESS_DENIED);
    EXPECT_THROW(m_pInterface->DoOpenDeviceByIP(Ipv4(192, 168, 1, 10), DEVICE_ACCESS_CONTROL), CInvalidAccessError);
    ASSERT_THAT(IDsOf(m_pInterface->GetDeviceList()), ElementsAre("IP::192.168.1.10"));
    EXPECT_EQ(Device(0)->GetGevDevInfo().IPAddress, Ipv4(192, 168, 1, 10));
    EXPECT_EQ(Device(0)->GetDeviceInformation().TLType, "GEV");
    Update();
    EXPECT_THAT(IDsOf(m_pInterface->GetDeviceList()), ElementsAre("cam-1")) << "the next update drops what failed";
    EXPECT_NE(Device(0), pListed);
}

TEST_F(GevInterface, DoesntOpenASecondTimeAnAddressThatIsOpen) {
    Adapter().Plug("cam-1");
    const auto pOpen = m_pInterface->DoOpenDeviceByIP(Ipv4(192, 168, 1, 10), DEVICE_ACCESS_CONTROL);
    EXPECT_EQ(Double().CallsOf("IFOpenDevice").back().Text(), "IFOpenDevice(if-1, IP::192.168.1.10, 3)");
    EXPECT_TRUE(pOpen->IsOpened());
    EXPECT_THAT(ThrownBy<CInvalidAccessError>(
                    [this] { m_pInterface->DoOpenDeviceByIP(Ipv4(192, 168, 1, 10), DEVICE_ACCESS_CONTROL); }),
                testing::MatchesRegex("The device has already been opened, .* CGevInterface::__SearchDeviceByIP"));
    EXPECT_EQ(Device(0), pOpen);
}

}  // namespace
