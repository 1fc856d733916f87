#include <algorithm>
#include <bit>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "gev/GvcpDiscovery.h"
#include "gev/GvcpForceIP.h"
#include "gev/GvcpResend.h"
#include "tests/camera/EngineOnTable.h"

namespace {

using namespace std::chrono_literals;
using camera::ENDPOINT;
using gev::EGvcpStatus;

constexpr std::uint32_t kEverybody = 0xFFFFFFFF;
constexpr ENDPOINT kOther{0x0A000003, 40001};
constexpr ENDPOINT kStranger{0xC0A80001, 40002};  // in another subnet
constexpr std::uint32_t kSlow = 0xAC00;

class Engine : public testing::Test {
protected:
    std::span<std::byte> Discovery(bool bBroadcast) {
        return gev::EncodeCommand(On.Buffer, gev::EGvcpCommand::Discovery,
                                  static_cast<std::uint8_t>(bBroadcast ? 0x11 : 0x01), On.NextID());
    }
    std::span<std::byte> ForceIP(std::uint32_t nIP, gev::CMACAddress objMAC = CEngineOnTable::kMAC) {
        return gev::EncodeForceIP(On.Buffer, On.NextID(), {objMAC, nIP, nIP == 0 ? 0 : 0xFFFFFF00, 0}, true);
    }
    /// The vendor command of the recovery pair.
    std::span<std::byte> Store(std::uint32_t nIP) {
        const auto arrDatagram = gev::EncodeCommand(On.Buffer, gev::EGvcpCommand::ForceIPEx, 0x11, 0xECD2, 76);
        On.kMAC.Put(arrDatagram.subspan<10, 6>());
        gev::Put32(arrDatagram, 32, nIP);
        gev::Put32(arrDatagram, 48, 0xFFFFFF00);
        return arrDatagram;
    }

    CEngineOnTable On;
};

TEST_F(Engine, DiscoveryIsAnsweredWhereTheAskerCanHearIt) {
    struct CASE {
        const char* What;
        ENDPOINT From;
        bool Broadcast;
        std::uint32_t To;
    };
    const CASE arrCase[] = {{"neighbour", CEngineOnTable::kHost, true, CEngineOnTable::kHost.Address},
                            {"neighbour without the flag", CEngineOnTable::kHost, false, CEngineOnTable::kHost.Address},
                            {"stranger", kStranger, true, kEverybody},
                            {"stranger without the flag", kStranger, false, kStranger.Address},
                            {"without address", {0, 40003}, true, kEverybody},
                            {"without address or flag", {0, 40003}, false, 0}};
    for (const CASE& objCase : arrCase) {
        SCOPED_TRACE(objCase.What);
        const auto vecAnswer = On.Ask(Discovery(objCase.Broadcast), objCase.From, kEverybody);
        ASSERT_EQ(vecAnswer.size(), objCase.To == 0 ? 0u : 1u);
        if (objCase.To != 0) {
            EXPECT_EQ(vecAnswer[0].To, (ENDPOINT{objCase.To, objCase.From.Port}));
            gev::DISCOVERY_RECORD objRecord;
            ASSERT_EQ(gev::DecodeDiscoveryAck(vecAnswer[0].Payload, objRecord), EGvcpStatus::Success);
            EXPECT_EQ(objRecord.MAC, CEngineOnTable::kMAC);
            EXPECT_EQ(objRecord.IP, CEngineOnTable::kAddress);
            EXPECT_EQ(objRecord.ModelName.GetText(), "Virtual GigE");
        }
    }
    EXPECT_TRUE(On.Ask(Discovery(true), kStranger, 0xC0A800FF).empty()) << "another subnet's broadcast";
}

TEST_F(Engine, DiscoveryWaitsUpToTheDelayOfItsRegister) {
    On.TakeControl();
    On.Write({{0x0950, 500}});
    EXPECT_TRUE(On.Ask(Discovery(true), CEngineOnTable::kHost, kEverybody).empty());
    EXPECT_LE(*On.Engine.NextTime(), On.Now + 500ms);
    On.Pass(500ms);
    EXPECT_EQ(On.Answers.size(), 1u);
}

TEST_F(Engine, EveryRefusalHasItsStatus) {
    struct CASE {
        const char* What;
        CEngineOnTable::ANSWER Answer;
        EGvcpStatus Status;
    };
    On.TakeControl();
    const CASE arrCase[] = {
        {"read where nothing is", On.Read({0xB000}), EGvcpStatus::InvalidAddress},
        {"third of four reads", On.Read({0, 4, 0xB000, 8}), EGvcpStatus::InvalidAddress},
        {"read unaligned", On.Read({2}), EGvcpStatus::BadAlignment},
        {"read what can only be written", On.Read({0xA204}), EGvcpStatus::AccessDenied},
        {"memory beyond the description", On.ReadMemory(0x0FFFFFFC, 4), EGvcpStatus::InvalidAddress},
        {"memory with a gap", On.ReadMemory(0xA000, 536), EGvcpStatus::InvalidAddress},
        {"write what can only be read", On.Write({{0x0000, 1}}), EGvcpStatus::WriteProtect},
        {"second of three writes", On.Write({{0xA110, 640}, {0xA114, 3}, {0xA118, 8}}), EGvcpStatus::InvalidParameter},
        {"write the description", On.Write({{0x00100000, 1}}), EGvcpStatus::WriteProtect},
        {"no such command", On.Ask(gev::EncodeCommand(On.Buffer, gev::EGvcpCommand::Action, 1, On.NextID(), 12)).at(0),
         EGvcpStatus::NotImplemented},
        {"no such privilege", On.Write({{0x0A00, 8}}), EGvcpStatus::InvalidParameter},
        {"memory over the privilege", On.WriteMemory(0x0954, std::vector<std::byte>(256)), EGvcpStatus::InvalidAddress},
    };
    for (const CASE& objCase : arrCase) {
        SCOPED_TRACE(objCase.What);
        EXPECT_EQ(objCase.Answer.Status, objCase.Status);
        EXPECT_EQ(objCase.Answer.Payload.size(), 0U);
    }
    EXPECT_EQ(On.Value(0xA110), 640u);
    EXPECT_EQ(On.Value(0xA118), 0u) << "what stands behind it isn't done";

    // A header that lies is refused; what isn't for anybody isn't answered at all.
    auto arrDatagram = gev::EncodeReadReg(On.Buffer, 7, std::vector<std::uint32_t>{0});
    EXPECT_EQ(On.Ask(arrDatagram.first(10)).at(0).Status, EGvcpStatus::InvalidHeader);
    EXPECT_TRUE(On.Ask(arrDatagram, CEngineOnTable::kHost, kEverybody).empty()) << "a broadcast read";
    EXPECT_TRUE(On.Ask(arrDatagram.first(7)).empty());
    arrDatagram[1] = std::byte{0};
    EXPECT_TRUE(On.Ask(arrDatagram).empty()) << "no acknowledge was wanted";
    arrDatagram[0] = std::byte{0};
    EXPECT_TRUE(On.Ask(arrDatagram).empty());
}

TEST_F(Engine, OneApplicationControlsAndOthersRead) {
    EXPECT_EQ(On.Write({{0xA110, 640}}).Status, EGvcpStatus::AccessDenied) << "nobody has control";
    On.TakeControl();
    EXPECT_EQ(On.Value(0x0A14), CEngineOnTable::kHost.Address);
    EXPECT_EQ(On.Write({{0x0A00, 2}}, kOther).Status, EGvcpStatus::AccessDenied);
    EXPECT_EQ(On.Write({{0xA110, 640}}, kOther).Status, EGvcpStatus::AccessDenied);
    EXPECT_EQ(On.Read({0x0A00}, kOther).Status, EGvcpStatus::Success);
    EXPECT_EQ(On.Ask(ForceIP(0x0A000009), kOther, kEverybody).at(0).Status, EGvcpStatus::AccessDenied);
    EXPECT_EQ(On.Address, CEngineOnTable::kAddress);

    On.Write({{0x0A00, 1}});
    EXPECT_EQ(On.Read({0x0A00}, kOther).Status, EGvcpStatus::AccessDenied) << "exclusive";
    On.Write({{0x0A00, 0}});
    On.TakeControl(kOther);
}

TEST_F(Engine, ControlEndsWithTheHeartbeatAndTakesTheChannelsAlong) {
    On.TakeControl();
    On.Write({{0x0938, 100}, {0x0D18, 0x0A000001}, {0x0D00, 5000}, {0x0B00, 5001}, {0xA204, 1}});
    EXPECT_EQ(On.Value(0x0938), 500u) << "the least";
    On.Pass(499ms);
    EXPECT_EQ(On.Value(0x0A00), 2u) << "which is a heartbeat";
    On.Pass(499ms);
    On.Read({0}, kOther);
    EXPECT_TRUE(On.Engine.GetDevice().IsAcquiring());
    On.Pass(1ms);
    for (const std::uint32_t nAddress : {0x0A00u, 0x0A04u, 0x0A14u, 0x0D00u, 0x0D18u, 0x0B00u}) {
        EXPECT_EQ(On.Value(nAddress), 0u) << nAddress;
    }
    EXPECT_FALSE(On.Engine.GetDevice().IsAcquiring());

    On.TakeControl();
    On.Write({{0x0954, 1}});
    On.Pass(1h);
    EXPECT_EQ(On.Value(0x0A00), 2u) << "without a heartbeat it never ends";
}

TEST_F(Engine, SlowWritesAreAnsweredInTheEndAndPendMeanwhileIfThatIsWanted) {
    On.TakeControl();
    On.Write({{0x0938, 500}});
    const std::vector<gev::REGISTER_WRITE> vecWrite = {{kSlow, 1000}};
    EXPECT_TRUE(On.Ask(gev::EncodeWriteReg(On.Buffer, On.NextID(), vecWrite)).empty());
    On.Pass(999ms);
    EXPECT_TRUE(On.Answers.empty());
    EXPECT_EQ(On.Value(kSlow), 0u);
    On.Answers.clear();
    On.Pass(1ms);
    ASSERT_EQ(On.Answers.size(), 1u);
    EXPECT_EQ(On.Value(kSlow), 1000u);
    EXPECT_EQ(On.Write({{kSlow, 60001}}).Status, EGvcpStatus::InvalidParameter) << "and that at once";

    On.Write({{0x0954, 2}});
    const auto arrCommand = gev::EncodeWriteReg(On.Buffer, On.NextID(), vecWrite);
    const auto vecPending = On.Ask(arrCommand);
    ASSERT_EQ(vecPending.size(), 1u);
    EXPECT_EQ(vecPending[0].Code, 0x0089);
    EXPECT_EQ(vecPending[0].ID, On.ID);
    EXPECT_EQ(gev::Get16(vecPending[0].Payload, 2), 1000);
    EXPECT_EQ(On.Ask(arrCommand).at(0).Code, 0x0089) << "a repeat begins nothing new";
    On.Pass(1000ms);
    EXPECT_EQ(On.Answers.back().Code, 0x0083);
    EXPECT_EQ(On.Answers.back().ID, On.ID);
}

TEST_F(Engine, ARepeatedWriteIsAnsweredAgainAndDoneOnce) {
    On.TakeControl();
    const std::vector<gev::REGISTER_WRITE> vecLatch = {{0x0944, 2}};
    const gev::GvcpBuffer arrCopy = (gev::EncodeWriteReg(On.Buffer, On.NextID(), vecLatch), On.Buffer);
    const auto arrCommand = std::span(arrCopy).first(16);
    On.Ask(arrCommand);
    const auto nLatched = On.Engine.GetDevice().Registers().Get(0x094C);
    On.Now += 10ms;
    gev::GvcpBuffer arrResend;
    On.Ask(gev::EncodeResend(arrResend, On.NextID(), {.BlockID = 1, .FirstPacketID = 1, .LastPacketID = 2}));
    ASSERT_EQ(On.Ask(arrCommand).size(), 1u);
    EXPECT_EQ(On.Engine.GetDevice().Registers().Get(0x094C), nLatched);
    On.Read({0});
    ASSERT_EQ(On.Ask(arrCommand).size(), 1u);
    EXPECT_EQ(On.Engine.GetDevice().Registers().Get(0x094C), nLatched + 10'000'000)
        << "behind another command it is new";
}

TEST_F(Engine, TheAddressFollowsForceIPAndTheRecoveryPair) {
    EXPECT_TRUE(On.Ask(ForceIP(0x0A000009, gev::CMACAddress(1)), kStranger, kEverybody).empty()) << "another's MAC";
    EXPECT_EQ(On.Ask(ForceIP(0x0A0000FF), kStranger, kEverybody).at(0).Status, EGvcpStatus::InvalidParameter);
    EXPECT_EQ(On.Address, CEngineOnTable::kAddress);
    EXPECT_EQ(On.Ask(ForceIP(0xC0A80009), kStranger, kEverybody).at(0).To.Address, kStranger.Address) << "now near";
    EXPECT_EQ(On.Address, 0xC0A80009);

    EXPECT_EQ(On.Ask(Store(0x0A010203), kStranger, kEverybody).at(0).Status, EGvcpStatus::Success);
    EXPECT_EQ(On.Address, 0xC0A80009) << "it is stored alone";
    EXPECT_TRUE(On.Ask(ForceIP(0), kStranger, kEverybody).empty()) << "a restart isn't acknowledged";
    EXPECT_EQ(On.Address, 0u);
    EXPECT_TRUE(On.Ask(Discovery(true), kStranger, kEverybody).empty()) << "nothing reaches the camera meanwhile";
    On.Pass(200ms);
    EXPECT_EQ(On.Address, 0x0A010203u);
    EXPECT_EQ(On.Value(0x0014), 5u);

    On.TakeControl();
    On.Write({{0x0014, 4}});
    On.Write({{0x0A00, 0}});
    On.Ask(ForceIP(0), kStranger, kEverybody);
    On.Pass(200ms);
    EXPECT_EQ(On.Address >> 16, 0xA9FEu) << "link-local";
}

TEST_F(Engine, FaultsSpoilAnswersAsTheirNamesSay) {
    struct CASE {
        const char* Fault;
        std::size_t Answers;  // at once
    };
    for (const CASE objCase : {CASE{"silent", 0}, CASE{"silent=control", 0}, CASE{"doubled", 2}, CASE{"late=50", 0},
                               CASE{"vanish-after=0", 0}, CASE{"vanish-after=0s", 0}, CASE{"pending-forever", 1},
                               CASE{"denied", 1}, CASE{"foreign-id", 1}}) {
        SCOPED_TRACE(objCase.Fault);
        camera::FAULTS objFaults;
        camera::SetFault(objFaults, objCase.Fault);
        On.Engine.SetFaults(objFaults, On.Now);
        const auto vecAnswer = On.Ask(gev::EncodeReadReg(On.Buffer, On.NextID(), std::vector<std::uint32_t>{0}));
        ASSERT_EQ(vecAnswer.size(), objCase.Answers);
        const std::string strFault = objCase.Fault;
        if (!vecAnswer.empty()) {
            EXPECT_EQ(vecAnswer[0].Status == EGvcpStatus::AccessDenied, strFault == "denied");
            EXPECT_EQ(vecAnswer[0].Code == 0x0089, strFault == "pending-forever");
            EXPECT_EQ(vecAnswer[0].ID != On.ID, strFault == "foreign-id");
        }
        if (strFault == "late=50" || strFault == "pending-forever") {
            const std::size_t nBefore = On.Answers.size();
            On.Pass(50ms);
            EXPECT_EQ(On.Answers.size(), nBefore + 1);
        }
        if (strFault == "silent=control") {
            EXPECT_EQ(On.Ask(Discovery(true), kStranger, kEverybody).size(), 1u);
        }
    }
    On.Engine.SetFaults({}, On.Now);
    EXPECT_EQ(On.Read({0}).Status, EGvcpStatus::Success) << "all right again";
    for (const char* pWrong : {"", "late", "late=", "late=1x", "late=-1", "silent=no", "doubled=1", "vanish-after=s",
                               "hostile-description", "hostile-description=x", "late=99999999999999999999"}) {
        camera::FAULTS objFaults;
        EXPECT_THROW(camera::SetFault(objFaults, pWrong), std::invalid_argument) << pWrong;
    }
}

TEST_F(Engine, AFloodIsAThousandASecond) {
    camera::FAULTS objFaults;
    objFaults.Flood = true;
    On.Engine.SetFaults(objFaults, On.Now);
    EXPECT_EQ(On.Read({0}).Status, EGvcpStatus::Success) << "whom it has answered it floods";
    On.Answers.clear();
    for (int i = 0; i < 1000; ++i) {
        On.Pass(1ms);
    }
    EXPECT_NEAR(static_cast<double>(On.Answers.size()), 1000, 2);

    objFaults.VanishAfterTime = 10ms;
    On.Engine.SetFaults(objFaults, On.Now);
    On.Pass(10ms);
    On.Answers.clear();
    On.Pass(1s);
    EXPECT_TRUE(On.Answers.empty()) << "a camera that has vanished floods nobody";
    EXPECT_FALSE(On.Engine.NextTime()) << "and has nothing to wake for";
}

TEST(IPSetting, TakesWhatAHostMayHave) {
    for (const char* pGood : {"10.0.0.2/24", "192.168.1.1/30", "169.254.3.4/16", "1.2.3.4/8"}) {
        EXPECT_NO_THROW(camera::ParseIPSetting(pGood)) << pGood;
    }
    for (const char* pBad : {"", "10.0.0.2", "10.0.0.2/", "10.0.0.2/31", "10.0.0.0/24", "10.0.0.255/24", "0.0.0.1/24",
                             "127.0.0.1/8", "224.0.0.1/24", "10.0.0.256/24", "10.0.0.2/24x", "10.0.0.2/-1"}) {
        EXPECT_THROW(camera::ParseIPSetting(pBad), std::invalid_argument) << pBad;
    }
}

TEST_F(Engine, TheStreamIsToldWhatTheRegistersSay) {
    struct CASE {
        const char* What;
        std::vector<gev::REGISTER_WRITE> Write;
        const char* Told;
    };
    const CASE arrCase[] = {
        {"a test packet without a channel", {{0x0D04, 0x800005DC}}, ""},
        {"a channel opens", {{0x0D18, CEngineOnTable::kHost.Address}, {0x0D00, 6000}}, "close open "},
        {"a test packet", {{0x0D04, 0xC0000578}}, "test "},
        {"a start", {{0xA210, 0x42480000}, {0xA204, 1}}, "start "},
        {"a further start", {{0xA204, 1}}, ""},
        {"a trigger that isn't waited for", {{0xA230, 1}}, ""},
        {"triggers that are", {{0xA220, 1}, {0xA224, 1}, {0xA230, 1}, {0xA234, 1}}, "trigger0 trigger1 "},
        {"a stop", {{0xA208, 1}}, "stop "},
        {"another port while images are taken", {{0xA204, 1}, {0x0D00, 6001}}, "start close open "},
        {"one image", {{0xA200, 0}, {0xA204, 1}}, "start "}};
    On.TakeControl();
    for (const CASE& objCase : arrCase) {
        SCOPED_TRACE(objCase.What);
        On.Stream.clear();
        EXPECT_EQ(On.Write(objCase.Write).Status, EGvcpStatus::Success);
        EXPECT_EQ(On.Stream, objCase.Told);
    }
    EXPECT_EQ(On.Settings.Channel, (camera::CHANNEL{CEngineOnTable::kHost.Address, 6001}));
    EXPECT_EQ(On.Settings.Frame.Rate, 50);
    EXPECT_EQ(On.Settings.Format.PacketSize, 1400u);
    EXPECT_TRUE(On.Settings.DoNotFragment);
    EXPECT_EQ(On.Settings.FrameCount, 1u);
    EXPECT_EQ(On.Write({{0x0D04, 1500}}).Status, EGvcpStatus::AccessDenied) << "images are taken";
    On.Engine.EndAcquisition(On.Settings.Acquisition - 1, On.Now);
    EXPECT_EQ(On.Write({{0x0D04, 1500}}).Status, EGvcpStatus::AccessDenied) << "an older one has ended";
    On.Engine.EndAcquisition(On.Settings.Acquisition, On.Now);
    EXPECT_EQ(On.Write({{0x0D04, 1500}}).Status, EGvcpStatus::Success);

    On.Stream.clear();
    const gev::RESEND_COMMAND objResend{0, 7, 1, 2, false};
    EXPECT_TRUE(On.Ask(gev::EncodeResend(On.Buffer, 1, objResend), kOther).empty());
    EXPECT_TRUE(On.Ask(gev::EncodeResend(On.Buffer, 1, objResend), {CEngineOnTable::kHost.Address, 9}).empty());
    EXPECT_EQ(On.Stream, "resend7 ") << "of the stream's host alone, and never acknowledged";
    On.Pass(4s);
    EXPECT_TRUE(On.Stream.starts_with("resend7 close ")) << "no heartbeat";
}

TEST_F(Engine, TheSensorWarmsUpWhileImagesAreTakenAndPasses90DegreesOnlyWhenItOverheats) {
    const auto sensor = [&] { return std::bit_cast<float>(On.Value(0xA004)); };
    On.TakeControl();
    On.Write({{0x0954, 1}});  // without a heartbeat
    for (const bool bOverheat : {false, true}) {
        SCOPED_TRACE(bOverheat);
        camera::FAULTS objFaults;
        objFaults.Overheat = bOverheat;
        On.Engine.SetFaults(objFaults, On.Now);
        On.Pass(10min);
        float nLast = sensor();
        EXPECT_NEAR(nLast, 41.5, 0.1);
        On.Write({{0xA204, 1}});
        for (int i = 0; i < 30; ++i) {
            On.Pass(1s);
            EXPECT_GT(sensor(), nLast);
            EXPECT_LT(sensor(), nLast + 3);
            nLast = sensor();
        }
        On.Now += 30s;  // in which nobody asks for anything
        On.Engine.EndAcquisition(On.Settings.Acquisition, On.Now);
        EXPECT_GT(sensor(), nLast + 1);
        EXPECT_EQ(sensor() > 90, bOverheat);
        nLast = sensor();
        On.Pass(1s);
        EXPECT_LT(sensor(), nLast);
    }
}

TEST_F(Engine, EventsAreRepeatedUntilTheyAreAcknowledgedOneAfterTheOther) {
    const auto codes = [&] {
        std::string strCodes;
        for (const auto& objEvent : std::exchange(On.Answers, {})) {
            EXPECT_EQ(objEvent.To, (ENDPOINT{CEngineOnTable::kHost.Address, 7000}));
            strCodes += std::to_string(objEvent.Code) + "/" + std::to_string(objEvent.ID) + " ";
        }
        return strCodes;
    };
    const auto tell = [&](std::size_t nEvent) { On.Engine.TellEvent({nEvent, true, 5, 5, 99}, On.Now); };
    On.TakeControl();
    tell(camera::kEventExposureEnd);
    On.Answers.clear();
    On.Write({{0x0B10, CEngineOnTable::kHost.Address}, {0x0B14, 100}, {0x0B18, 2}, {0x0B00, 7000}});
    On.Answers.clear();
    tell(camera::kEventFrameTrigger);
    tell(camera::kEventExposureEnd);
    EXPECT_EQ(codes(), "192/1 ") << "the one before the channel was there is lost, the second waits";
    On.Pass(99ms);
    EXPECT_EQ(codes(), "");
    On.Pass(1ms);
    EXPECT_EQ(codes(), "192/1 ");
    gev::GvcpBuffer arrBuffer;
    On.Ask(gev::EncodeAcknowledge(arrBuffer, gev::EGvcpCommand::Event, 9, EGvcpStatus::Success));
    EXPECT_EQ(codes(), "") << "of another event";
    On.Ask(gev::EncodeAcknowledge(arrBuffer, gev::EGvcpCommand::Event, 1, EGvcpStatus::NotImplemented));
    EXPECT_EQ(On.Answers.at(0).Payload.size(), 40u) << "an entry with a long ID, and 16 bytes";
    EXPECT_EQ(gev::Get64(On.Answers.at(0).Payload, 32), 5u);
    EXPECT_EQ(codes(), "194/2 ");
    for (int i = 0; i < 5; ++i) {
        On.Pass(100ms);
    }
    EXPECT_EQ(codes(), "194/2 194/2 ") << "two repeats, then it is given up";
    On.Write({{0x0B14, 0}});
    On.Answers.clear();
    tell(camera::kEventFrameTrigger);
    tell(camera::kEventFrameTrigger);
    EXPECT_EQ(codes(), "192/3 192/4 ") << "without a time-out nobody is waited for";
}

}  // namespace
