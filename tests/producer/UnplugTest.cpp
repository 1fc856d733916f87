// Cameras that are unplugged at any moment: while they are looked for, opened, read, lost or closed.

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "gev/Address.h"
#include "producer/ProducerError.h"
#include "producer/wire/AdapterSocket.h"
#include "producer/wire/ControlChannel.h"
#include "producer/wire/Discovery.h"
#include "producer/wire/SocketDescriptor.h"
#include "tests/producer/Cable.h"
#include "tests/producer/ScriptedCamera.h"

namespace {

using gev::MakeIPv4;
using namespace producer;
using namespace std::chrono_literals;

class Unplug : public CCableTest {
protected:
    /// Looks for the camera, opens it, and reads on two threads until that fails or the channel is closed.
    void Use() {
        CDiscovery objDiscovery("eth0");
        auto objUpdate =
            std::async(std::launch::async, [&] { return objDiscovery.DoUpdate(DISCOVERY_MODE::Limited, 40ms); });
        try {
            const auto objAdapter = FindAdapter("eth0");
            if (!objAdapter) {
                return;
            }
            CControlChannel objChannel(*objAdapter, MakeIPv4(10, 1, 0, 2), CONTROL_ACCESS::Control, {5ms, 1, 20ms},
                                       [this](CONTROL_LOSS, const std::string&) { ++m_nLosses; });
            const auto read = [&] {
                std::array<std::byte, 3000> arrBuffer;
                try {
                    for (int i = 0; i < 40; ++i) {
                        objChannel.DoRead(0xA001, arrBuffer);
                    }
                } catch (const CProducerError&) {
                    ++m_nFailures;
                }
            };
            auto objReader = std::async(std::launch::async, read);
            read();
            objChannel.Close();
        } catch (const CProducerError&) {
            ++m_nFailures;
        }
    }

    std::atomic<int> m_nFailures{0};
    std::atomic<int> m_nLosses{0};
};

TEST_F(Unplug, AHundredTimesAtAnyMomentHangsNothing) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    for (int i = 0; i < 100; ++i) {
        auto pCamera = std::make_unique<CScriptedCamera>(
            *m_pFar, "far-eth0", std::vector{MakeRecord(0x0211'2233'4455, MakeIPv4(10, 1, 0, 2))});
        const auto objStart = Clock::now();
        auto objUse = std::async(std::launch::async, [this] {
            m_pNear->Enter();
            Use();
        });
        std::this_thread::sleep_for(i % 50 * 500us);  // from one state to the next
        if (i % 2 == 0) {
            pCamera.reset();
        } else {
            m_pFar->Run("ip link set far-eth0 down");
        }
        objUse.get();
        EXPECT_LT(Clock::now() - objStart, 3s);
        m_pFar->Run("ip link set far-eth0 up");
    }
    EXPECT_GT(m_nFailures, 0);
    EXPECT_EQ(m_nLosses, 0);  // all was over before a heartbeat was due
}

TEST_F(Unplug, AdapterThatGoesForGoodIsOneLossAndACleanClose) {
    Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
    CScriptedCamera objCamera(*m_pFar, "far-eth0", {});
    objCamera.SetRegister(gev::bootstrap::kHeartbeatTimeout, 500);
    std::promise<void> objLost;
    CControlChannel objChannel(FindAdapter("eth0").value(), MakeIPv4(10, 1, 0, 2), CONTROL_ACCESS::Exclusive,
                               {50ms, 1, 50ms}, [&](CONTROL_LOSS, const std::string&) { objLost.set_value(); });
    m_pNear->Run("ip link delete eth0");
    EXPECT_EQ(objLost.get_future().wait_for(800ms), std::future_status::ready);
    EXPECT_THROW(objChannel.DoReadRegister(0xA000), CProducerError);
    const auto objStart = Clock::now();
    objChannel.Close();
    EXPECT_LT(Clock::now() - objStart, 100ms);
}

}  // namespace
