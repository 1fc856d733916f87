// What is done to a camera's addresses, with the virtual camera, which really applies them.

#include <chrono>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gev/Address.h"
#include "gev/Bootstrap.h"
#include "producer/ProducerError.h"
#include "producer/wire/AdapterSocket.h"
#include "producer/wire/Discovery.h"
#include "producer/wire/IpOperations.h"
#include "tests/camera/RunningCamera.h"
#include "tests/producer/Cable.h"

namespace {

using gev::MakeIPv4;
using namespace producer;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;

constexpr std::uint32_t kMask = 0xFFFFFF00;
constexpr std::uint32_t kInside = MakeIPv4(10, 1, 0, 7);

class IpOperations : public CCableTest {
protected:
    void SetUp() override {
        CCableTest::SetUp();
        if (m_pFar) {
            Plug("eth0", "10.1.0.1/24", "");
            camera::CAMERA_CONFIGURATION objConfiguration;
            objConfiguration.Interface = "far-eth0";
            objConfiguration.IP = camera::ParseIPSetting("192.168.77.5/24");
            objConfiguration.Persistent = camera::ParseIPSetting("10.1.0.5/24");
            m_pCamera = std::make_unique<CRunningCamera>(*m_pFar, objConfiguration);
            m_nMac = m_pCamera->Get().GetMAC().GetValue();
        }
    }

    void Silence() {
        camera::FAULTS objFaults;
        objFaults.Silent = camera::ESilence::All;
        m_pCamera->Get().SetFaults(objFaults);
    }

    /// The text with which the call fails, behind its code.
    template <class Call>
    static std::string FailureOf(Call funCall) {
        try {
            funCall();
            return "none";
        } catch (const CProducerError& objError) {
            return std::to_string(objError.GetCode()) + " " + objError.what();
        }
    }

    std::unique_ptr<CRunningCamera> m_pCamera;
    std::uint64_t m_nMac = 0;
};

TEST_F(IpOperations, ForceIpMovesACameraOfAnotherSubnetAndRestartTakesItBack) {
    DoForceIp("eth0", m_nMac, {kInside, kMask, 0});
    EXPECT_EQ(m_pCamera->Get().GetAddress(), kInside);
    const auto objResult = CDiscovery("eth0").DoUpdate(DISCOVERY_MODE::DirectedSubnet, 150ms);
    ASSERT_EQ(objResult.Devices.size(), 1U);
    EXPECT_EQ(objResult.Devices[0].Address, kInside);
    EXPECT_EQ(objResult.Devices[0].AccessStatus, DEVICE_ACCESS_STATUS_READWRITE);
    DoRestartIpConfiguration("eth0", m_nMac);
    EXPECT_EQ(m_pCamera->Get().GetAddress(), MakeIPv4(10, 1, 0, 5));
}

TEST_F(IpOperations, FailuresTellWhatWasSentAndWhatCameBack) {
    EXPECT_THAT(FailureOf([&] { DoConfigureIp("eth0", m_nMac, {}); }), HasSubstr("192.168.77.5"));
    DoForceIp("eth0", m_nMac, {kInside, kMask, 0});
    const CControlChannel objHolder(FindAdapter("eth0").value(), kInside, CONTROL_ACCESS::Control, {}, nullptr);
    EXPECT_THAT(FailureOf([&] {
                    DoForceIp("eth0", m_nMac, {MakeIPv4(10, 1, 0, 9), kMask, 0});
                }),
                AllOf(HasSubstr(std::to_string(GC_ERR_ACCESS_DENIED)), HasSubstr("FORCEIP_CMD"), HasSubstr("denied")));
    EXPECT_THAT(FailureOf([&] {
                    DoForceIp("eth0", m_nMac, {kInside, 0xFFFF0000, 0});
                }),
                HasSubstr(std::to_string(GC_ERR_ACCESS_DENIED)))
        << "the address alone is not all";
    EXPECT_THAT(FailureOf([&] { DoConfigureIp("eth0", m_nMac, {}); }),
                AllOf(HasSubstr(std::to_string(GC_ERR_ACCESS_DENIED)), HasSubstr("10.1.0.1")));
    EXPECT_THAT(FailureOf([&] { DoAskDevice("eth0", MakeIPv4(10, 1, 0, 99)); }), HasSubstr("10.1.0.99"));
    EXPECT_THAT(FailureOf([&] {
                    DoForceIp("eth9", m_nMac, {kInside, kMask, 0});
                }),
                HasSubstr(std::to_string(GC_ERR_NOT_AVAILABLE)));
    const IP_SETTINGS arrBad[] = {{kInside, 0xFF00FF00, 0},
                                  {MakeIPv4(10, 1, 0, 255), kMask, 0},
                                  {MakeIPv4(10, 1, 0, 0), kMask, 0},
                                  {MakeIPv4(239, 1, 0, 2), kMask, 0},
                                  {MakeIPv4(10, 1, 0, 1), kMask, 0},
                                  {0, kMask, 0},
                                  {kInside, kMask, MakeIPv4(255, 255, 255, 255)}};
    for (const auto& objBad : arrBad) {
        EXPECT_THAT(FailureOf([&] { DoForceIp("eth0", m_nMac, objBad); }),
                    HasSubstr(std::to_string(GC_ERR_INVALID_PARAMETER)));
    }
    Silence();
    EXPECT_THAT(FailureOf([&] {
                    DoForceIp("eth0", m_nMac, {kInside, kMask, 0});
                }),
                AllOf(HasSubstr(std::to_string(GC_ERR_TIMEOUT)), HasSubstr("no discovery acknowledge")));
}

TEST_F(IpOperations, ConfigurationIsKeptByTheCamera) {
    DoForceIp("eth0", m_nMac, {kInside, kMask, 0});
    DoConfigureIp("eth0", m_nMac,
                  {gev::bootstrap::kIPConfigurationPersistent, MakeIPv4(10, 1, 0, 8), kMask, {}, "first"});
    EXPECT_THAT(FailureOf([&] {
                    DoConfigureIp("eth0", m_nMac, {2, {}, {}, {}, {}});
                }),
                HasSubstr(std::to_string(GC_ERR_NOT_AVAILABLE)));
    EXPECT_THAT(FailureOf([&] {
                    DoConfigureIp("eth0", m_nMac, {0, MakeIPv4(127, 1, 0, 8), {}, {}, {}});
                }),
                HasSubstr(std::to_string(GC_ERR_INVALID_PARAMETER)));
    EXPECT_THAT(FailureOf([&] {
                    DoConfigureIp("eth0", m_nMac, {4, MakeIPv4(10, 1, 0, 9), {}, {}, std::string(17, 'n')});
                }),
                HasSubstr("longer than 16 bytes"));
    DoConfigureIp("eth0", m_nMac, {0, {}, {}, {}, "bench"});
    const auto arrReply = DoAskDevice("eth0", kInside);
    EXPECT_EQ(std::to_integer<int>(arrReply[16]), DEVICE_ACCESS_STATUS_READWRITE);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(arrReply.data() + 240)), "bench");
    DoRestartIpConfiguration("eth0", m_nMac);
    EXPECT_EQ(m_pCamera->Get().GetAddress(), MakeIPv4(10, 1, 0, 8));
}

}  // namespace
