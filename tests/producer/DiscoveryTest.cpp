// Discovery on adapters of the test's own, from the question to the list.

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <span>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gev/Address.h"
#include "producer/wire/AdapterSocket.h"
#include "producer/wire/Discovery.h"
#include "producer/wire/SocketDescriptor.h"
#include "producer/wire/UdpSocket.h"
#include "tests/producer/Cable.h"
#include "tests/producer/ScriptedCamera.h"

namespace {

using gev::MakeIPv4;
using namespace producer;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint64_t kMac = 0x02'11'22'33'44'00;

class Discovery : public CCableTest {
protected:
    /// Runs an update on a thread of its own, as consumers do.
    static std::future<DISCOVERY_RESULT> Start(CDiscovery& objDiscovery, std::chrono::milliseconds objTimeout,
                                               DISCOVERY_MODE eMode = DISCOVERY_MODE::Limited) {
        return std::async(std::launch::async,
                          [&objDiscovery, objTimeout, eMode] { return objDiscovery.DoUpdate(eMode, objTimeout); });
    }
};

TEST_F(Discovery, AdaptersTellWhatTheyAre) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    Plug("bare", "", "");
    Plug("off", "10.2.0.1/24", "");
    m_pNear->Run(
        "ip link set lo up; ip link set off down; ip address add 10.5.0.1/16 dev eth0;"
        "ip link set eth0 address 02:11:22:33:44:55 mtu 1400;"
        "ip route add default via 10.1.0.9 metric 7; ip route add default via 10.5.0.9 metric 3;"
        "ip route add 10.77.0.0/16 via 10.1.0.8");
    const auto vecAdapters = ListAdapters();
    ASSERT_EQ(vecAdapters.size(), 2U);
    const ADAPTER& objFirst = vecAdapters[0];
    EXPECT_EQ(objFirst.Name, "eth0");
    EXPECT_EQ(objFirst.Mac, 0x021122334455U);
    EXPECT_EQ(objFirst.Mtu, 1400U);
    EXPECT_EQ(objFirst.Gateway, MakeIPv4(10, 5, 0, 9));
    EXPECT_TRUE(objFirst.HasLink);
    EXPECT_EQ(objFirst.Addresses,
              (std::vector<ADAPTER_ADDRESS>{{MakeIPv4(10, 1, 0, 1), 0xFFFFFF00, MakeIPv4(10, 1, 0, 255)},
                                            {MakeIPv4(10, 5, 0, 1), 0xFFFF0000, MakeIPv4(10, 5, 255, 255)}}));
    EXPECT_EQ(vecAdapters[1].Name, "bare");
    EXPECT_EQ(vecAdapters[1].GetDefaultAddress(), ADAPTER_ADDRESS{});
    EXPECT_FALSE(FindAdapter("off"));
}

TEST_F(Discovery, FindsCamerasOfAnySubnetAndAsksWhoControlsThem) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    CScriptedCamera objCamera(*m_pFar, "far-eth0",
                              {MakeRecord(kMac + 1, MakeIPv4(10, 1, 0, 2)), MakeRecord(kMac, MakeIPv4(172, 16, 0, 2))});
    const struct {
        std::uint32_t Privilege;
        DEVICE_ACCESS_STATUS Status;
        DISCOVERY_MODE Mode;
    } arrCases[] = {{0, DEVICE_ACCESS_STATUS_READWRITE, DISCOVERY_MODE::Limited},
                    {2, DEVICE_ACCESS_STATUS_READONLY, DISCOVERY_MODE::DirectedSubnet},
                    {1, DEVICE_ACCESS_STATUS_NOACCESS, DISCOVERY_MODE::Limited}};
    for (const auto& objCase : arrCases) {
        objCamera.SetRegister(gev::bootstrap::kControlChannelPrivilege, objCase.Privilege);
        const auto objResult = CDiscovery("eth0").DoUpdate(objCase.Mode, 300ms);
        ASSERT_EQ(objResult.Devices.size(), 2U);
        EXPECT_EQ(objResult.End, DISCOVERY_END::Complete);
        EXPECT_TRUE(objResult.Devices[0].IsOutsideSubnet);
        EXPECT_EQ(objResult.Devices[1].Model, "Model");
        EXPECT_EQ(objResult.Devices[1].AccessStatus, objCase.Status);
        EXPECT_THAT(objResult.Advice, IsEmpty());
    }
}

TEST_F(Discovery, ListensOnAdaptersWithoutAddressAndWithoutTime) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    Plug("bare", "", "172.16.0.2/24");
    CScriptedCamera objNear(*m_pFar, "far-eth0", {MakeRecord(kMac, MakeIPv4(10, 1, 0, 2))});
    CScriptedCamera objBare(*m_pFar, "far-bare", {MakeRecord(kMac, MakeIPv4(172, 16, 0, 2))});
    EXPECT_EQ(CDiscovery("eth0").DoUpdate(DISCOVERY_MODE::Limited, 0ms).End, DISCOVERY_END::CutShort);
    CDiscovery objDiscovery("bare");
    auto objResult = objDiscovery.DoUpdate(DISCOVERY_MODE::DirectedSubnet, 0ms);
    for (int i = 0; i < 50 && objResult.Devices.empty(); ++i) {  // a busy machine is too slow for it at times
        objResult = objDiscovery.DoUpdate(DISCOVERY_MODE::DirectedSubnet, 0ms);
    }
    EXPECT_EQ(objResult.End, DISCOVERY_END::Complete);
    EXPECT_EQ(objResult.Devices.size(), 1U);
    EXPECT_THAT(objResult.Advice, HasSubstr("no IPv4 address"));
}

TEST_F(Discovery, StopEndsAnUpdateAtOnceAndIsForgottenWithoutOne) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    CScriptedCamera objCamera(*m_pFar, "far-eth0", {MakeRecord(kMac, MakeIPv4(10, 1, 0, 2))});
    std::promise<void> objAsked;
    std::atomic<int> nAsked{0};
    objCamera.SetScript([&](auto&, const auto&, auto) {
        if (nAsked++ == 0) {
            objAsked.set_value();
        }
        return false;
    });
    CDiscovery objDiscovery("eth0");
    objDiscovery.Stop();
    auto objUpdate = Start(objDiscovery, 1000ms);
    ASSERT_EQ(objAsked.get_future().wait_for(1s), std::future_status::ready);
    const auto objStart = Clock::now();
    objDiscovery.Stop();
    EXPECT_EQ(objUpdate.get().End, DISCOVERY_END::CutShort);
    EXPECT_LT(Clock::now() - objStart, 250ms);  // 10 ms when the machine has nothing else to do

    const auto objAgain = Clock::now();
    EXPECT_EQ(objDiscovery.DoUpdate(DISCOVERY_MODE::Limited, 80ms).End, DISCOVERY_END::Complete);
    EXPECT_GE(Clock::now() - objAgain, 80ms);
}

TEST_F(Discovery, AdapterThatIsGoneOrGoesTakesItsTimeAndNoList) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    CScriptedCamera objCamera(*m_pFar, "far-eth0", {MakeRecord(kMac, MakeIPv4(10, 1, 0, 2))});
    std::atomic<int> nQuestions{0};
    objCamera.SetScript([&](auto&, const auto& objHeader, auto) {
        if (objHeader.Command == gev::EGvcpCommand::Discovery && ++nQuestions == 2) {
            m_pNear->Run("ip link set eth0 down");
        }
        return false;
    });
    for (const bool bGone : {false, true}) {
        CDiscovery objDiscovery("eth0");
        const auto objStart = Clock::now();
        const auto objResult = objDiscovery.DoUpdate(DISCOVERY_MODE::Limited, 400ms);
        EXPECT_GE(Clock::now() - objStart, 400ms);
        EXPECT_EQ(objResult.End, bGone ? DISCOVERY_END::Complete : DISCOVERY_END::CutShort);
        EXPECT_EQ(objResult.Adapter.has_value(), !bGone);
        EXPECT_EQ(objResult.Advice.empty(), !bGone);
    }
}

TEST_F(Discovery, FloodAndForeignAnswersAreCountedAndEndNothing) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    CScriptedCamera objCamera(*m_pFar, "far-eth0", {MakeRecord(kMac, MakeIPv4(10, 1, 0, 2))});
    objCamera.SetScript([](CScriptedCamera& objSelf, const auto& objHeader, auto) {
        gev::GvcpBuffer arrBuffer;
        if (objHeader.Command == gev::EGvcpCommand::Discovery) {
            // Ahead of the flood, in which the receiver's buffer may run over.
            const auto objOwn = MakeRecord(kMac, MakeIPv4(10, 1, 0, 2));
            objSelf.Answer(gev::EncodeDiscoveryAck(arrBuffer, objHeader.RequestID, objOwn));
            for (std::uint32_t i = 1; i <= 2000; ++i) {
                const auto nID = static_cast<std::uint16_t>(i % 4 == 0 ? objHeader.RequestID + 7 : objHeader.RequestID);
                const auto objRecord = MakeRecord(kMac + i, MakeIPv4(192, 168, 0, 0) + i);
                objSelf.Answer(gev::EncodeDiscoveryAck(arrBuffer, nID, objRecord).first(i % 4 == 1 ? 100 : 256));
            }
        }
        return false;
    });
    const auto objStart = Clock::now();
    const auto objResult = CDiscovery("eth0").DoUpdate(DISCOVERY_MODE::Limited, 200ms);
    EXPECT_LT(Clock::now() - objStart, 600ms);
    EXPECT_GT(objResult.RefusedAnswers, 100U);
    EXPECT_GT(objResult.Devices.size(), 100U);
    EXPECT_EQ(objResult.Devices.front().Mac, kMac);
}

TEST_F(Discovery, DatagramsThatAreDroppedHoldNobodyInAReceive) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    const CUdpSocket objNear(FindAdapter("eth0").value());
    m_pFar->Do([&] {
        const CUdpSocket objFar(FindAdapter("far-eth0").value());
        const std::array<std::byte, 8> arrLong{};
        for (int i = 0; i < 100; ++i) {
            EXPECT_EQ(objFar.SendTo(MakeIPv4(10, 1, 0, 1), objNear.GetLocalPort(), arrLong), 0);
        }
        EXPECT_EQ(objFar.SendTo(MakeIPv4(10, 1, 0, 1), objNear.GetLocalPort(), std::span(arrLong).first(4)), 0);
    });
    std::array<std::byte, 4> arrBuffer;
    ASSERT_TRUE(WaitReadable({objNear.GetDescriptor()}, Clock::now() + 1s));
    EXPECT_FALSE(objNear.Receive(arrBuffer));
    EXPECT_TRUE(objNear.Receive(arrBuffer)) << "behind those that were dropped";
}

TEST_F(Discovery, CamerasThatNobodyReachesHoldUpNothing) {
    Plug("eth0", "10.1.0.1/16", "10.1.0.2/16");
    std::vector<gev::DISCOVERY_RECORD> vecRecords{MakeRecord(kMac, MakeIPv4(10, 1, 0, 2))};
    for (std::uint32_t i = 1; i <= 1000; ++i) {  // each is asked who controls it, and no host has its address
        vecRecords.push_back(MakeRecord(kMac + i, MakeIPv4(10, 1, 1, 0) + i));
    }
    const CScriptedCamera objCamera(*m_pFar, "far-eth0", vecRecords);
    const auto objStart = Clock::now();
    const auto objResult = CDiscovery("eth0").DoUpdate(DISCOVERY_MODE::Limited, 500ms);
    EXPECT_LT(Clock::now() - objStart, 3s);
    EXPECT_EQ(objResult.Devices.front().AccessStatus, DEVICE_ACCESS_STATUS_READWRITE);
}

}  // namespace
