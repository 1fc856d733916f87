// The control channel over a cable, with a camera that does what the test says.

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gev/Address.h"
#include "gev/GvcpRegister.h"
#include "producer/ProducerError.h"
#include "producer/wire/AdapterSocket.h"
#include "producer/wire/ControlChannel.h"
#include "producer/wire/ControlTurn.h"
#include "producer/wire/SocketDescriptor.h"
#include "tests/producer/Cable.h"
#include "tests/producer/ScriptedCamera.h"

namespace {

namespace bootstrap = gev::bootstrap;
using gev::MakeIPv4;
using namespace producer;
using namespace std::chrono_literals;
using testing::HasSubstr;

constexpr std::uint32_t kCamera = MakeIPv4(10, 1, 0, 2);

/// The code with which the call fails, or GC_ERR_SUCCESS.
template <class Call>
GC_ERROR CodeOf(Call funCall) {
    try {
        funCall();
        return GC_ERR_SUCCESS;
    } catch (const CProducerError& objError) {
        EXPECT_THAT(objError.what(), HasSubstr("10.1.0.2"));
        return objError.GetCode();
    }
}

class ControlChannel : public CCableTest {
protected:
    void SetUp() override {
        CCableTest::SetUp();
        if (m_pFar) {
            Plug("eth0", "10.1.0.1/24", "10.1.0.2/24");
            TurnOn();
        }
    }

    /// A new camera, which nobody controls.
    void TurnOn() {
        m_pCamera.reset();
        m_pCamera = std::make_unique<CScriptedCamera>(*m_pFar, "far-eth0", std::vector<gev::DISCOVERY_RECORD>());
        m_pCamera->SetRegister(bootstrap::kHeartbeatTimeout, 600);
    }

    std::unique_ptr<CControlChannel> Open(CONTROL_ACCESS eAccess = CONTROL_ACCESS::Control) {
        return std::make_unique<CControlChannel>(FindAdapter("eth0").value(), kCamera, eAccess,
                                                 CONTROL_SETTINGS{50ms, 2, 300ms},
                                                 [this](CONTROL_LOSS eLoss, const std::string&) {
                                                     if (m_nLosses++ == 0) {
                                                         m_objLoss.set_value(eLoss);
                                                     }
                                                 });
    }

    /// What the channel was lost for; fails when it isn't within the time.
    CONTROL_LOSS AwaitLoss(std::chrono::milliseconds objTime) {
        auto objFuture = m_objLoss.get_future();
        if (objFuture.wait_for(objTime) != std::future_status::ready) {
            ADD_FAILURE() << "no loss in time";
            return {};
        }
        return objFuture.get();
    }

    std::unique_ptr<CScriptedCamera> m_pCamera;
    std::atomic<int> m_nLosses{0};
    std::promise<CONTROL_LOSS> m_objLoss;
};

TEST_F(ControlChannel, TakesThePrivilegeAndGivesItBack) {
    auto pFirst = Open();
    EXPECT_EQ(m_pCamera->GetRegister(bootstrap::kControlChannelPrivilege), bootstrap::kPrivilegeControl);
    EXPECT_EQ(pFirst->GetHeartbeatTimeout(), 600ms);
    EXPECT_EQ(pFirst->GetLocalAddress(), MakeIPv4(10, 1, 0, 1));
    EXPECT_EQ(CodeOf([&] { Open(); }), GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(CodeOf([&] { Open(CONTROL_ACCESS::ReadOnly)->DoWriteRegister(0xA000, 1); }), GC_ERR_ACCESS_DENIED);
    pFirst->Close();
    EXPECT_EQ(CodeOf([&] { pFirst->DoReadRegister(0xA000); }), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(m_pCamera->GetRegister(bootstrap::kControlChannelPrivilege), 0U);
    EXPECT_EQ(Open(CONTROL_ACCESS::Exclusive)->GetAccess(), CONTROL_ACCESS::Exclusive);
    EXPECT_EQ(m_nLosses, 0);
}

TEST_F(ControlChannel, ReadsAndWritesAnyLengthAtAnyAddress) {
    for (const bool bBlocks : {true, false}) {
        m_pCamera->SetRegister(bootstrap::kGvcpCapability, bBlocks ? bootstrap::kGvcpCapabilityWriteMem : 0);
        const auto pChannel = Open();
        for (const std::size_t nSize : {1U, 2U, 3U, 4U, 5U, 7U, 8U, 535U, 536U, 537U, 1075U}) {
            for (std::uint32_t nAddress = 0xA000; nAddress < 0xA004; ++nAddress) {
                auto vecExpected = m_pCamera->GetMemory();
                std::vector<std::byte> vecData(nSize);
                for (std::size_t i = 0; i < nSize; ++i) {
                    vecData[i] = static_cast<std::byte>(nSize + nAddress + i * 7);
                }
                std::copy(vecData.begin(), vecData.end(), vecExpected.begin() + nAddress);
                pChannel->DoWrite(nAddress, vecData);
                ASSERT_EQ(m_pCamera->GetMemory(), vecExpected) << nSize << " bytes at " << nAddress;
                std::vector<std::byte> vecRead(nSize);
                pChannel->DoRead(nAddress, vecRead);
                ASSERT_EQ(vecRead, vecData) << nSize << " bytes at " << nAddress;
            }
        }
        std::vector<std::byte> vecBuffer(8);
        EXPECT_EQ(CodeOf([&] { pChannel->DoRead(0xF0000, vecBuffer); }), GC_ERR_INVALID_ADDRESS);
        EXPECT_THROW(pChannel->DoRead(0xFFFFFFFC, vecBuffer), CProducerError);
        EXPECT_THROW(pChannel->DoRead(0xFFFFFFFF'FFFFFFFC, vecBuffer), CProducerError);
        EXPECT_THROW(static_cast<void>(pChannel->DoReadRegister(2)), CProducerError);
    }
}

TEST_F(ControlChannel, CameraThatAnswersBadlyCostsBoundedTimeAndAClearError) {
    const auto pChannel = Open();
    using Script = CScriptedCamera::Script;
    const auto onlyManufacturers = [](Script funScript) {
        return [funScript](CScriptedCamera& objSelf, const auto& objHeader, std::span<const std::byte> objPayload) {
            return gev::Get32(objPayload, 0) >= 0xA000 && funScript(objSelf, objHeader, objPayload);
        };
    };
    gev::GvcpBuffer arrBuffer;
    const auto pend = [&](CScriptedCamera& objSelf, const gev::GVCP_COMMAND_HEADER& objHeader) {
        objSelf.Answer(gev::EncodePendingAck(arrBuffer, objHeader.RequestID, 60'000));
    };
    std::atomic<int> nAsked{0};
    const struct {
        const char* Name;
        Script What;
        GC_ERROR Code;
        std::chrono::milliseconds Limit;
    } arrCases[] = {
        {"busy",
         [](auto& objSelf, auto& objHeader, auto) { return objSelf.Refuse(objHeader, gev::EGvcpStatus::Busy), true; },
         GC_ERR_BUSY, 300ms},
        {"silent", [](auto&, auto&, auto) { return true; }, GC_ERR_TIMEOUT, 600ms},
        {"endless patience", [&](auto& objSelf, auto& objHeader, auto) { return pend(objSelf, objHeader), true; },
         GC_ERR_TIMEOUT, 900ms},
        {"patience, then the answer",
         [&](auto& objSelf, auto& objHeader, auto) {
             pend(objSelf, objHeader);
             std::this_thread::sleep_for(200ms);
             return false;
         },
         GC_ERR_SUCCESS, 800ms},
        {"another's answers",
         [&](auto& objSelf, auto& objHeader, auto) {
             const std::uint32_t nValue = 1;
             for (std::uint16_t i = 1; i < 50; ++i) {
                 objSelf.Answer(gev::EncodeReadRegAck(arrBuffer, static_cast<std::uint16_t>(objHeader.RequestID + i),
                                                      std::span(&nValue, 1)));
             }
             return true;
         },
         GC_ERR_TIMEOUT, 600ms},
        {"wrong length",
         [&](auto& objSelf, auto& objHeader, auto) {
             const std::uint32_t arrValues[2]{};
             return objSelf.Answer(gev::EncodeReadRegAck(arrBuffer, objHeader.RequestID, arrValues)), true;
         },
         GC_ERR_IO, 300ms},
        {"the first answer lost", [&](auto&, auto&, auto) { return nAsked++ == 0; }, GC_ERR_SUCCESS, 500ms},
    };
    for (const auto& objCase : arrCases) {
        m_pCamera->SetScript(onlyManufacturers(objCase.What));
        const auto objStart = Clock::now();
        EXPECT_EQ(CodeOf([&] { pChannel->DoReadRegister(0xA000); }), objCase.Code) << objCase.Name;
        EXPECT_LT(Clock::now() - objStart, objCase.Limit) << objCase.Name;
    }
    EXPECT_EQ(m_nLosses, 0);  // all the while the heartbeat was answered
}

TEST_F(ControlChannel, SilentCameraIsLostWithinTheHeartbeatTimeoutAndClosesAtOnce) {
    const auto pChannel = Open();
    // Readers that wait in vain keep the heartbeat from nothing.
    std::vector<std::future<GC_ERROR>> vecReaders;
    for (int i = 0; i < 4; ++i) {
        vecReaders.push_back(std::async(std::launch::async, [&] {
            for (;;) {
                const GC_ERROR nCode = CodeOf([&] { pChannel->DoReadRegister(0xA000); });
                if (nCode != GC_ERR_SUCCESS && nCode != GC_ERR_TIMEOUT) {
                    return nCode;
                }
            }
        }));
    }
    m_pCamera->SetSilent(true);
    EXPECT_EQ(AwaitLoss(900ms), CONTROL_LOSS::NoAnswer);  // 600, and what a busy machine takes
    for (auto& objReader : vecReaders) {
        EXPECT_EQ(objReader.get(), GC_ERR_ZR_DEVICE_OFFLINE);
    }
    const auto objStart = Clock::now();
    pChannel->Close();
    EXPECT_LT(Clock::now() - objStart, 100ms);
    EXPECT_EQ(m_nLosses, 1);
}

TEST_F(ControlChannel, HeartbeatOfASilentCameraLetsQuestionsFailInTheirOwnTime) {
    m_pCamera->SetRegister(bootstrap::kHeartbeatTimeout, 3000);
    const auto pChannel = Open();
    m_pCamera->SetSilent(true);
    const auto objEnd = Clock::now() + 5s;
    while (pChannel->GetStatistics().Repeats == 0 && Clock::now() < objEnd) {
        std::this_thread::sleep_for(1ms);
    }
    const auto objStart = Clock::now();
    EXPECT_EQ(CodeOf([&] { pChannel->DoReadRegister(0xA000); }), GC_ERR_TIMEOUT);
    EXPECT_LT(Clock::now() - objStart, 1s);
    EXPECT_EQ(AwaitLoss(3s), CONTROL_LOSS::NoAnswer);
}

TEST_F(ControlChannel, ControlThatTheCameraDropsOrGivesToAnotherIsLost) {
    {
        const auto pChannel = Open();
        m_pCamera->SetRegister(bootstrap::kControlChannelPrivilege, 0);
        EXPECT_EQ(AwaitLoss(800ms), CONTROL_LOSS::Dropped);
    }
    m_nLosses = 0;
    m_objLoss = {};
    TurnOn();
    const auto pChannel = Open();
    m_pCamera->SetRegister(bootstrap::kPrimaryApplicationPort, 1);
    EXPECT_EQ(AwaitLoss(800ms), CONTROL_LOSS::Taken);
    EXPECT_EQ(CodeOf([&] { pChannel->DoReadRegister(0xA000); }), GC_ERR_ZR_DEVICE_OFFLINE);
}

TEST_F(ControlChannel, GivesThePrivilegeBackToACameraThatWasOnlyCutOffOrBusy) {
    for (const bool bBusy : {false, true}) {
        TurnOn();
        auto pChannel = Open();
        m_pCamera->SetSilent(!bBusy);
        if (!bBusy) {
            EXPECT_EQ(AwaitLoss(2s), CONTROL_LOSS::NoAnswer);
            m_pCamera->SetSilent(false);
        }
        std::atomic<int> nReleases = 0;
        m_pCamera->SetScript([&](CScriptedCamera& objCamera, const auto& objHeader, auto objPayload) {
            const bool bRelease = objHeader.Command == gev::EGvcpCommand::WriteReg &&
                                  gev::Get32(objPayload, 0) == bootstrap::kControlChannelPrivilege.Address;
            const bool bRefused = bBusy && bRelease && nReleases++ == 0;
            if (bRefused) {
                objCamera.Refuse(objHeader, gev::EGvcpStatus::Busy);
            }
            return bRefused;
        });
        pChannel.reset();
        EXPECT_EQ(m_pCamera->GetRegister(bootstrap::kControlChannelPrivilege), 0U) << bBusy;
    }
}

TEST_F(ControlChannel, LongCommandTimeoutCostsNoCameraForOneLostDatagram) {
    m_pCamera->SetRegister(bootstrap::kHeartbeatTimeout, 1500);
    const auto pChannel = Open();
    pChannel->SetAnswerTimeout(2s);
    std::atomic<int> nAsked = 0;
    m_pCamera->SetScript([&](auto&, const auto& objHeader, auto objPayload) {
        return objHeader.Command == gev::EGvcpCommand::ReadReg && gev::Get32(objPayload, 0) == 0xA000 && nAsked++ == 0;
    });
    EXPECT_EQ(CodeOf([&] { pChannel->DoReadRegister(0xA000); }), GC_ERR_SUCCESS);
    EXPECT_FALSE(pChannel->IsLost());
}

TEST_F(ControlChannel, ShorterHeartbeatIsFollowedThoughTheCameraDoesNotTellIt) {
    m_pCamera->SetRegister(bootstrap::kHeartbeatTimeout, 6000);
    const auto pChannel = Open();
    m_pCamera->SetScript([](auto&, const auto& objHeader, auto objPayload) {
        return objHeader.Command == gev::EGvcpCommand::ReadReg &&
               gev::Get32(objPayload, 0) == bootstrap::kHeartbeatTimeout.Address;
    });
    pChannel->DoSetHeartbeatTimeout(600ms);
    EXPECT_EQ(pChannel->GetHeartbeatTimeout(), 600ms);
}

TEST_F(ControlChannel, CloseEndsReadsOfOtherThreads) {
    auto pChannel = Open();
    pChannel->SetAnswerTimeout(10s);
    std::promise<void> objAsked;
    m_pCamera->SetScript([&](auto&, const auto& objHeader, auto objPayload) {
        if (objHeader.Command == gev::EGvcpCommand::ReadMem) {
            objAsked.set_value();
        }
        return objHeader.Command == gev::EGvcpCommand::ReadMem || gev::Get32(objPayload, 0) == 0xA000;
    });
    auto objReader = std::async(std::launch::async, [&] {
        std::array<std::byte, 100> arrBuffer;
        return CodeOf([&] { pChannel->DoRead(0xA000, arrBuffer); });
    });
    ASSERT_EQ(objAsked.get_future().wait_for(2s), std::future_status::ready);
    const auto objStart = Clock::now();
    pChannel->Close();
    EXPECT_EQ(objReader.get(), GC_ERR_INVALID_HANDLE);
    EXPECT_LT(Clock::now() - objStart, 250ms);
    EXPECT_EQ(m_pCamera->GetRegister(bootstrap::kControlChannelPrivilege), 0U);
}

TEST_F(ControlChannel, HeartbeatFollowsAWriteToItsRegister) {
    const auto pChannel = Open();
    pChannel->DoSetHeartbeatTimeout(2000ms);
    EXPECT_EQ(pChannel->GetHeartbeatTimeout(), 2000ms);
    const std::vector<std::byte> vecLow(2);
    pChannel->DoWrite(bootstrap::kHeartbeatTimeout.Address + 2, vecLow);
    EXPECT_EQ(pChannel->GetHeartbeatTimeout(), 500ms);  // less counts as this
    m_pCamera->SetSilent(true);
    EXPECT_EQ(AwaitLoss(800ms), CONTROL_LOSS::NoAnswer);
}

TEST(ControlTurn, ThatIsNotGivenInTimeIsNotTakenAndTheOthersGoOn) {
    CControlTurn objTurn;
    std::thread objOther;
    {
        const CControlTurn::CHolder objHolder(objTurn);
        objOther = std::thread([&] { const CControlTurn::CHolder objNext(objTurn); });
        EXPECT_FALSE(CControlTurn::CHolder(objTurn, Clock::now() + 20ms).HasTurn());
    }
    objOther.join();
    EXPECT_TRUE(CControlTurn::CHolder(objTurn, Clock::now() + 1s).HasTurn());
}

TEST_F(ControlChannel, AdapterThatGoesForGoodIsALossAndACleanClose) {
    const auto pChannel = Open();
    pChannel->DoSetHeartbeatTimeout(500ms);
    m_pNear->Run("ip link delete eth0");
    EXPECT_EQ(AwaitLoss(800ms), CONTROL_LOSS::NoAnswer);
    EXPECT_EQ(CodeOf([&] { pChannel->DoReadRegister(0xA000); }), GC_ERR_ZR_DEVICE_OFFLINE);
    const auto objStart = Clock::now();
    pChannel->Close();
    EXPECT_LT(Clock::now() - objStart, 100ms);
}

}  // namespace
