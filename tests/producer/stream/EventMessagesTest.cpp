// What comes on a message channel, without a camera.

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gev/BigEndian.h"
#include "producer/stream/EventMessages.h"

namespace {

using namespace std::chrono_literals;

/// Takes commands, and tells what became of each: "ID:BYTES " of every event, and "ack" where one was sent.
class EventMessages : public testing::Test {
protected:
    std::string Take(std::span<const std::byte> arrDatagram, std::uint16_t nPort = 3956) {
        gev::GvcpBuffer arrAnswer;
        m_strEvents.clear();
        const bool bAcknowledge = !m_objMessages.Take(arrDatagram, nPort, m_tNow, arrAnswer).empty();
        return m_strEvents + (bAcknowledge ? "ack" : "");
    }
    /// Event 2, whose time tells one from another.
    std::string TakeTrigger(std::uint16_t nRequestID, std::uint64_t nTime, std::uint16_t nPort = 3956) {
        const gev::EVENT_ENTRY objEvent{gev::kEventTrigger, 0, 0, nTime};
        gev::GvcpBuffer arrBuffer;
        return Take(gev::EncodeEvent(arrBuffer, nRequestID, {&objEvent, 1}, false, true), nPort);
    }

    producer::Clock::time_point m_tNow{1h};
    std::string m_strEvents;
    producer::CEventMessages m_objMessages{
        [this](const gev::EVENT_ENTRY& objEvent, std::span<const std::byte> spanData) {
            m_strEvents += std::to_string(objEvent.EventID) + ":" + std::to_string(spanData.size()) + " ";
        }};
};

TEST_F(EventMessages, ARepeatIsAcknowledgedAgainAndHandedOnOnce) {
    struct CASE {
        const char* What;
        std::uint16_t RequestID;
        std::uint64_t Time;
        bool New;
        std::chrono::seconds Pause{};  // before it
        std::uint16_t Port = 3956;
    };
    const CASE arrCase[] = {
        {"the first", 65534, 1, true},
        {"a further one under way", 65535, 2, true},
        {"IDs that wrap", 1, 3, true},
        {"the first again, behind others", 65534, 1, false},
        {"the second again", 65535, 2, false},
        {"another program's port", 65535, 2, true, 0s, 4000},
        {"a camera that began anew", 1, 4, true},
        {"again, late", 1, 4, false, 10s},
        {"and later still", 1, 4, false, 10s},
        {"a camera without a clock that began anew", 1, 4, true, 11s},
    };
    for (const CASE& objCase : arrCase) {
        m_tNow += objCase.Pause;
        EXPECT_EQ(TakeTrigger(objCase.RequestID, objCase.Time, objCase.Port), objCase.New ? "2:0 ack" : "ack")
            << objCase.What;
    }
    for (std::uint16_t i = 0; i < producer::CEventMessages::kRemembered; ++i) {
        EXPECT_EQ(TakeTrigger(static_cast<std::uint16_t>(100 + i), 5), "2:0 ack");
    }
    EXPECT_EQ(TakeTrigger(100, 5), "ack") << "the oldest that is remembered";
    EXPECT_EQ(TakeTrigger(1, 4), "2:0 ack") << "the one before it is forgotten";
}

TEST_F(EventMessages, AllEventsOfACommandComeInTheirOrderAsFarAsTheyAreWhole) {
    struct CASE {
        const char* What;
        std::vector<std::uint16_t> Sizes;  // that the events tell
        std::size_t Length;                // of all
        bool ExtendedIDs;
        const char* Told;
    };
    const CASE arrCase[] = {
        {"three", {24, 32, 28}, 84, true, "1:0 2:8 3:4 ack"},
        {"as many as there is room for", std::vector<std::uint16_t>(22, 24), 528, true, nullptr},
        {"one without a size", {0}, 40, true, "1:16 ack"},
        {"padding", {24, 0}, 52, true, "1:0 ack"},
        {"less than an entry behind it", {24, 24}, 40, true, "1:0 ack"},
        {"a second one that is longer than what is left", {24, 32}, 52, true, "1:0 ack"},
        {"a second one that is shorter than an entry", {24, 8, 24}, 72, true, "1:0 ack"},
        {"a first one that is longer than all", {100}, 48, true, "ack"},
        {"short IDs, where no size is told", {16, 16}, 48, false, "1:32 ack"},
    };
    for (const CASE& objCase : arrCase) {
        SCOPED_TRACE(objCase.What);
        gev::GvcpBuffer arrBuffer;
        const auto arrDatagram = gev::EncodeCommand(arrBuffer, gev::EGvcpCommand::EventData,
                                                    objCase.ExtendedIDs ? 0x11 : 0x01, 1, objCase.Length);
        std::size_t nPlace = gev::kGvcpHeaderSize;
        for (std::uint16_t i = 0; i < objCase.Sizes.size() && nPlace + 4 <= arrDatagram.size(); ++i) {
            gev::Put16(arrDatagram, nPlace, objCase.Sizes[i]);
            gev::Put16(arrDatagram, nPlace + 2, static_cast<std::uint16_t>(i + 1));
            nPlace += objCase.Sizes[i];
        }
        const std::string strTold = Take(arrDatagram);
        EXPECT_TRUE(objCase.Told == nullptr ? strTold.ends_with("21:0 22:0 ack") : strTold == objCase.Told) << strTold;
    }
    const std::vector<gev::EVENT_ENTRY> vecEvent = {{2, 0, 1, 1}, {4, 0, 1, 2}, {2, 0, 2, 3}};
    gev::GvcpBuffer arrBuffer;
    EXPECT_EQ(Take(gev::EncodeEvent(arrBuffer, 1, vecEvent, true, false)), "2:0 4:0 2:0 ");
    EXPECT_EQ(Take(gev::EncodeCommand(arrBuffer, gev::EGvcpCommand::ReadReg, 1, 1, 4)), "") << "no message";
    EXPECT_EQ(Take(gev::EncodeCommand(arrBuffer, gev::EGvcpCommand::Event, 1, 1, 25)), "ack") << "no whole entry";
}

}  // namespace
