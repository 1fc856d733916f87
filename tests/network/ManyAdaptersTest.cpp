// Ten adapters with three cameras each, through the module tree: what an update lists, and what an adapter that goes in
// the middle of it takes along.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "tests/network/SwitchedNetwork.h"
#include "tests/network/TreeOnProducer.h"

namespace {

constexpr int kAdapters = 10;
constexpr int kCamerasEach = 3;
constexpr std::uint64_t kWindowMs = 500;
constexpr int kGoing = 4;  // the number of the adapter that goes

class ManyAdapters : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
            GTEST_SKIP() << strWhy;
        }
        m_objNetwork.emplace(kAdapters, kCamerasEach, [this](int nCamera, camera::CAMERA_CONFIGURATION& objCamera) {
            if (nCamera / kCamerasEach == kGoing) {
                objCamera.Faults.Late = std::chrono::milliseconds(200);
            }
            if (nCamera == kGoing * kCamerasEach) {
                objCamera.Log = [this](std::string_view strLine) { Witness(strLine); };
            }
        });
        m_objNetwork->GetMachine().Enter();
        m_objTree.emplace();
        ASSERT_EQ(m_objTree->Update(kWindowMs), 30U);
    }

    /// On the thread of a camera of the adapter that goes, which has been asked and not yet answered.
    void Witness(std::string_view strLine) {
        if (strLine.starts_with("DISCOVERY") && m_bArmed.exchange(false)) {
            m_funMeanwhile();
        }
    }

    /// One update, in the middle of which something happens.
    std::size_t UpdateWhile(std::function<void()> funMeanwhile) {
        m_funMeanwhile = std::move(funMeanwhile);
        m_bArmed = true;
        const std::size_t nCameras = m_objTree->Update(kWindowMs);
        EXPECT_FALSE(m_bArmed) << "nothing happened";
        return nCameras;
    }

    std::function<void()> m_funMeanwhile;  // written while no update runs
    std::atomic<bool> m_bArmed{false};
    std::optional<CSwitchedNetwork> m_objNetwork;
    std::optional<CTreeOnProducer> m_objTree;  // goes before the network
};

/// Takes the right to packet sockets from the calling thread, and from those that it starts.
void DropPacketSockets() {
    __user_cap_header_struct objHeader{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct arrData[2]{};
    ASSERT_EQ(syscall(SYS_capget, &objHeader, arrData), 0);
    arrData[0].effective &= ~(1U << CAP_NET_RAW);
    ASSERT_EQ(syscall(SYS_capset, &objHeader, arrData), 0);
}

TEST_F(ManyAdapters, OneThatGoesDuringAnUpdateKeepsItsCamerasForThatUpdateAndTheOthersForever) {
    const CNetworkNamespace& objMachine = m_objNetwork->GetMachine();
    const struct {
        const char* Name;
        std::function<void()> Go;
        std::function<void()> ComeBack;
        std::size_t Adapters;  // listed meanwhile
    } arrCases[] = {
        {"switched off", [&] { objMachine.Run("ip link set eth4 down"); },
         [&] { objMachine.Run("ip link set eth4 up"); }, 9},
        {"cable pulled", [&] { m_objNetwork->GetSwitches().Run("ip link set uplink4 down"); },
         [&] { m_objNetwork->GetSwitches().Run("ip link set uplink4 up"); }, 10},
        {"deleted", [&] { objMachine.Run("ip link delete eth4"); }, [&] { m_objNetwork->Cable(kGoing); }, 9}};
    const boost::shared_ptr<CGevInterface> pInterface = m_objTree->Interface(kGoing);
    for (const auto& objCase : arrCases) {
        SCOPED_TRACE(objCase.Name);
        // To miss a camera on an adapter that went is no proof that the camera has gone.
        EXPECT_EQ(UpdateWhile(objCase.Go), 30U);
        EXPECT_EQ(m_objTree->Update(kWindowMs), 27U);
        EXPECT_EQ(m_objTree->TL()->GetInterfaceList().size(), objCase.Adapters);
        objCase.ComeBack();
        m_objNetwork->AwaitLinks();
        EXPECT_EQ(m_objTree->Update(kWindowMs), 30U);
        EXPECT_THAT(m_objTree->TL()->GetInterfaceList(), testing::Contains(pInterface)) << "the same object";
    }
    EXPECT_EQ(UpdateWhile([&] {
                  objMachine.Run("ip link delete eth4");
                  m_objNetwork->Cable(kGoing);
              }),
              30U);
    m_objNetwork->AwaitLinks();
    EXPECT_EQ(m_objTree->Update(kWindowMs), 30U);
}

TEST_F(ManyAdapters, ListLostCamerasBehindStrictReversePathFiltersOrSayWhatToCheck) {
    m_objNetwork->GetMachine().Run("for f in /proc/sys/net/ipv4/conf/*/rp_filter; do echo 1 > $f; done");
    EXPECT_EQ(m_objTree->Update(kWindowMs), 30U);
    const auto getAdvice = [&] {
        return m_objTree->Interface(kGoing)->GetFeatureControl()->DoGetString("DeviceUpdateListAdvice");
    };
    EXPECT_EQ(getAdvice(), "");
    std::thread([&] {
        DropPacketSockets();
        EXPECT_EQ(m_objTree->Update(kWindowMs), 20U);
        EXPECT_THAT(getAdvice(), testing::HasSubstr("set net.ipv4.conf.all.rp_filter and net.ipv4.conf.eth4.rp_filter "
                                                    "to 0, or give the program the right to packet sockets"));
        m_objNetwork->GetMachine().Run("for f in /proc/sys/net/ipv4/conf/*/rp_filter; do echo 0 > $f; done");
        EXPECT_EQ(m_objTree->Update(kWindowMs), 30U);
    }).join();
}

}  // namespace
