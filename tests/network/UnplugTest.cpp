// Cameras that go in every state that a program can have them in, each in every way, through the module tree; many at
// once, while updates look for them all the time.

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "support/Event.h"
#include "tests/TLClass/FunctionCallback.h"
#include "tests/network/SwitchedNetwork.h"
#include "tests/network/TreeOnProducer.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

enum class EState { Listed, Opening, LoadingNodeMap, Reading, Idle, Updating, Closing };
constexpr std::array kStates{EState::Listed, EState::Opening,  EState::LoadingNodeMap, EState::Reading,
                             EState::Idle,   EState::Updating, EState::Closing};

enum class EUnplug { PowerCut, ProgramKilled, CameraUnplugged, AdapterUnplugged };
constexpr int kUnplugs = 4;
constexpr int kMoments = 4;  // in each state
constexpr int kUsers = kUnplugs * kMoments;

constexpr auto kHeartbeatTimeout = 3s;  // of a camera that nobody told another
constexpr auto kSlack = 2s;             // for a busy machine
constexpr std::uint32_t kLongEnoughMs = 10'000;

/// How often somebody was told that the camera has gone.
struct OFFLINE {
    std::atomic<int> Count{0};
    CEvent First;
};

/// Somebody with a camera on an adapter of its own that goes at a certain request in a certain state.
class CUser {
public:
    CUser(CSwitchedNetwork& objNetwork, int nUser)
        : m_objNetwork(objNetwork),
          m_nUser(nUser),
          m_eUnplug(static_cast<EUnplug>(nUser % kUnplugs)),
          m_pInterface(CTreeOnProducer::Interface(static_cast<std::size_t>(nUser))) {}

    /// On the camera's thread, at each request.
    void OnRequest(std::string_view strLine) {
        const bool bDiscovery = strLine.starts_with("DISCOVERY");
        m_bFound = m_bFound || bDiscovery;
        EState eState = m_eState;
        if (eState == EState::Opening && strLine.starts_with("READMEM")) {
            eState = EState::LoadingNodeMap;
        }
        if (eState == m_eTarget && bDiscovery == (eState == EState::Updating) && m_nRequestsLeft-- == 0) {
            if (!IsLink()) {
                m_objNetwork.GetCamera(m_nUser).Get().Stop();
                m_objMoment.set_value();
            } else {
                m_objMoment.set_value();
                m_objUnplugged.get_future().wait();
            }
        }
    }

    /// Uses the camera until it goes in this state, and puts it back.
    void LoseIn(EState eTarget) {
        Enter(EState::Listed);
        m_eTarget = eTarget;
        m_objMoment = {};
        m_objUnplugged = {};
        m_objOffline.Count = 0;
        m_objOffline.First.Reset();
        m_nRequestsLeft = m_nUser / kUnplugs * (eTarget == EState::LoadingNodeMap ? 4 : 1);
        auto objUnplugging = std::async(std::launch::async, [this] {
            m_objMoment.get_future().wait();
            Unplug();
            m_objUnplugged.set_value();
        });
        if (const boost::shared_ptr<IDevice> pDevice = AwaitListed()) {
            EndOf(EState::Listed);
            Use(*pDevice);
            EXPECT_FALSE(pDevice->IsOpened());
        }
        EndOf(eTarget);
        objUnplugging.get();
        PutBack();
    }

    Clock::duration GetLongest() const { return m_objLongest; }

private:
    void Enter(EState eState) { m_eState = eState; }

    /// The camera goes here at the latest.
    void EndOf(EState eState) {
        if (m_eTarget == eState && m_nRequestsLeft.exchange(-1) >= 0) {
            m_objMoment.set_value();
        }
    }

    /// @return whether it went well
    template <class Step>
    bool Try(const Step& funStep) {
        const auto tmStart = Clock::now();
        bool bGood = true;
        try {
            funStep();
        } catch (const std::exception&) {
            bGood = false;
        }
        m_objLongest = std::max(m_objLongest, Clock::now() - tmStart);
        return bGood;
    }

    void Use(IDevice& objDevice) {
        Enter(EState::Opening);
        const bool bOpen = Try([&] { objDevice.DoOpenDevice(DEVICE_ACCESS_CONTROL); });
        EndOf(EState::Opening);
        EndOf(EState::LoadingNodeMap);
        if (!bOpen) {
            EXPECT_LE(m_eTarget, EState::LoadingNodeMap);
            return;
        }
        COfflineFunction objCallback([this] {
            if (m_objOffline.Count++ == 0) {
                m_objOffline.First.Signal();
            }
        });
        if (Try([&] { objDevice.RegisterDeviceOfflineCallback(&objCallback); })) {
            UseOpen(objDevice);
        }
        Enter(EState::Closing);
        if (m_nRequestsLeft > 0) {
            EndOf(EState::Closing);  // there is one request alone, so that all but the first go beside it
        }
        Try([&] { objDevice.DoCloseDevice(); });
        EXPECT_LE(m_objOffline.Count, 1);
    }

    void UseOpen(IDevice& objDevice) {
        Try([&] { objDevice.GetFeatureControl()->DoSetFloat("DeviceLinkHeartbeatTimeout", 500'000); });
        Enter(EState::Reading);
        for (int i = 0; i < kMoments + 1; ++i) {
            Try([&] { objDevice.GetRemoteFeatureControl()->DoGetFloat("DeviceTemperature"); });
        }
        EndOf(EState::Reading);
        Enter(EState::Updating);
        bool bChanged = false;
        EXPECT_TRUE(Try([&] { m_pInterface->DoUpdateDeviceList(200, &bChanged); }));
        EndOf(EState::Updating);
        Enter(EState::Idle);
        if (m_eTarget < EState::Closing) {
            EXPECT_TRUE(Try([&] { EXPECT_TRUE(m_objOffline.First.Wait(kLongEnoughMs)); }));  // the heartbeat tells
            EXPECT_TRUE(objDevice.IsDeviceOffline());
        }
    }

    bool IsLink() const { return m_eUnplug >= EUnplug::CameraUnplugged; }

    void SetLink(const std::string& strState) {
        const std::string strNumber = std::to_string(m_nUser);
        m_objNetwork.GetSwitches().Run(
            "ip link set " +
            (m_eUnplug == EUnplug::CameraUnplugged ? "port" + strNumber + "-0 " : "uplink" + strNumber + ' ') +
            strState);
    }

    void Unplug() {
        if (IsLink()) {
            SetLink("down");
            return;
        }
        m_objNetwork.SwitchOff(m_nUser);
        if (m_eUnplug == EUnplug::ProgramKilled) {
            // Its machine is still there, and says that nobody listens.
            m_objNetwork.GetPlace(m_nUser).Run("ip address add 10." + std::to_string(m_nUser + 1) + ".0.11/24 dev cam");
        }
    }

    /// Another camera, as the old one would keep the control that nobody could give back, until an update finds it.
    void PutBack() {
        m_objNetwork.SwitchOff(m_nUser);
        if (IsLink()) {
            SetLink("up");
        }
        Enter(EState::Listed);
        m_bFound = false;
        m_objNetwork.SwitchOn(m_nUser);
        AwaitListed();
    }

    /// Updates until one has found the camera. On a busy machine another may miss it, and take it off the list.
    boost::shared_ptr<IDevice> AwaitListed() {
        const auto tmEnd = Clock::now() + 20s;
        while (Clock::now() < tmEnd) {
            if (const auto vecDevice = m_pInterface->GetDeviceList(); m_bFound && !vecDevice.empty()) {
                return vecDevice[0];
            }
            bool bChanged = false;
            m_pInterface->DoUpdateDeviceList(100, &bChanged);
        }
        ADD_FAILURE() << "the camera isn't listed";
        return nullptr;
    }

    CSwitchedNetwork& m_objNetwork;
    const int m_nUser;
    const EUnplug m_eUnplug;
    const boost::shared_ptr<CGevInterface> m_pInterface;
    std::atomic<EState> m_eState{EState::Listed};
    std::atomic<EState> m_eTarget{EState::Listed};
    std::atomic<int> m_nRequestsLeft{-1};  // in that state; below 0 the camera is going or gone
    std::atomic<bool> m_bFound{false};     // an update has asked the camera since it was put back
    std::promise<void> m_objMoment;        // the camera is to go
    std::promise<void> m_objUnplugged;
    OFFLINE m_objOffline;
    Clock::duration m_objLongest{};  // of all calls
};

TEST(Unplug, InEveryStateEndsNothingAndHangsNothingAndIsToldOnce) {
    if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
        GTEST_SKIP() << strWhy;
    }
    std::vector<std::unique_ptr<CUser>> vecUsers(kUsers);
    std::atomic<bool> bReady{false};
    CSwitchedNetwork objNetwork(kUsers, 1, [&](int nCamera, camera::CAMERA_CONFIGURATION& objCamera) {
        objCamera.Log = [&, nCamera](std::string_view strLine) {
            if (bReady) {
                vecUsers[static_cast<std::size_t>(nCamera)]->OnRequest(strLine);
            }
        };
    });
    objNetwork.GetMachine().Enter();
    const CTreeOnProducer objTree;
    ASSERT_EQ(objTree.Update(500), static_cast<std::size_t>(kUsers));
    for (int i = 0; i < kUsers; ++i) {
        vecUsers[static_cast<std::size_t>(i)] = std::make_unique<CUser>(objNetwork, i);
    }
    bReady = true;
    std::vector<std::future<void>> vecDone;
    for (const auto& pUser : vecUsers) {
        vecDone.push_back(std::async(std::launch::async, [&] {
            for (const EState eState : kStates) {
                pUser->LoseIn(eState);
            }
        }));
    }
    for (auto& objDone : vecDone) {
        while (objDone.wait_for(0s) != std::future_status::ready) {
            objTree.Update(200);
        }
        objDone.get();
    }
    EXPECT_EQ(objTree.Update(500), static_cast<std::size_t>(kUsers));
    for (const auto& pUser : vecUsers) {
        EXPECT_LT(pUser->GetLongest(), kHeartbeatTimeout + kSlack);
    }
}

}  // namespace
