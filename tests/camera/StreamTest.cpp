// The stream without a network: what leaves the thread that takes images.

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "camera/Faults.h"
#include "camera/ImageStream.h"
#include "gev/BigEndian.h"
#include "gev/GvspChunk.h"

namespace {

using namespace std::chrono_literals;
using gev::EGvspFormat;

struct PACKET {
    gev::GVSP_HEADER Header;
    std::vector<std::byte> Body;
};

/// Keeps what a stream sends and tells.
class CCatcher : public camera::IPacketOutlet, public camera::IStreamNews {
public:
    [[nodiscard]] std::uint16_t GetPort() const override { return 1; }
    void SetDestination(const camera::CHANNEL& objChannel, bool /*bDoNotFragment*/) override {
        m_bLeadsAnywhere = objChannel.LeadsAnywhere();
    }
    void Send(std::span<const camera::STREAM_PACKET> arrPacket) override {
        if (!m_bLeadsAnywhere) {
            Note("nowhere");
            return;
        }
        const std::scoped_lock lock(m_mtx);
        for (const camera::STREAM_PACKET& objPacket : arrPacket) {
            std::vector<std::byte> vecPacket(objPacket.Header.begin(), objPacket.Header.end());
            vecPacket.insert(vecPacket.end(), objPacket.Body.begin(), objPacket.Body.end());
            PACKET& objKept = m_vecPacket.emplace_back();
            std::span<const std::byte> arrBody;
            EXPECT_TRUE(gev::DecodeGvspHeader(vecPacket, objKept.Header, arrBody));
            objKept.Body.assign(arrBody.begin(), arrBody.end());
        }
        m_cv.notify_all();
    }
    [[nodiscard]] camera::UNSENT_PACKETS TakeUnsent() override { return {}; }
    void SendForeign(const camera::STREAM_PACKET& /*objPacket*/) override { Note("foreign"); }
    void AcquisitionEnded(std::uint32_t nAcquisition) override { Note("end" + std::to_string(nAcquisition)); }
    void Unsent(std::uint32_t /*nAcquisition*/, const camera::UNSENT_PACKETS& /*objUnsent*/) override {}
    void Happened(const camera::FRAME_EVENT& objEvent) override {
        Note("event" + std::to_string(objEvent.Event) + "/" + std::to_string(objEvent.Frame));
    }

    /// What came when it is enough, or after 10 s.
    std::vector<PACKET> Await(const std::function<bool(const std::vector<PACKET>&)>& isEnough) {
        std::unique_lock lock(m_mtx);
        EXPECT_TRUE(m_cv.wait_for(lock, 10s, [&] { return isEnough(m_vecPacket); })) << m_vecPacket.size();
        return std::exchange(m_vecPacket, {});
    }
    std::vector<PACKET> AwaitTrailers(std::size_t nTrailers) {
        return Await([=](const std::vector<PACKET>& vecPacket) {
            return CountOf(vecPacket, EGvspFormat::Trailer) >= nTrailers;
        });
    }
    static std::size_t CountOf(const std::vector<PACKET>& vecPacket, EGvspFormat eFormat) {
        return static_cast<std::size_t>(std::ranges::count_if(
            vecPacket, [&](const PACKET& objPacket) { return objPacket.Header.Format == eFormat; }));
    }
    void AwaitNote(const std::string& strNote) {
        std::unique_lock lock(m_mtx);
        EXPECT_TRUE(m_cv.wait_for(lock, 10s, [&] { return m_strNotes.find(strNote) != std::string::npos; }));
    }
    std::string TakeNotes() {
        const std::scoped_lock lock(m_mtx);
        return std::exchange(m_strNotes, {});
    }

private:
    void Note(const std::string& strNote) {
        const std::scoped_lock lock(m_mtx);
        m_strNotes += strNote + " ";
        m_cv.notify_all();
    }

    bool m_bLeadsAnywhere = true;  // of the stream's thread
    std::mutex m_mtx;              // guards what follows
    std::vector<PACKET> m_vecPacket;
    std::string m_strNotes;
    std::condition_variable m_cv;
};

/// A stream of images of 64 times 32 in 5 payload packets, a thousand a second.
class Stream : public testing::Test {
protected:
    Stream() {
        Settings.Channel = {0x0A000001, 5000};
        Settings.Format.Image = {64, 32};
        Settings.Format.PacketSize = 512;
        Settings.Frame.Rate = 1000;
        Settings.Frame.Exposure = 10us;
        Settings.Frame.Pattern = camera::ETestPattern::GreyDiagonalRampMoving;
        Settings.FrameCount = 1;
    }
    void Start(std::uint32_t nFrames) {
        Settings.FrameCount = nFrames;
        ++Settings.Acquisition;
        Sender->Start(Settings);
    }
    /// "PACKET-ID:STATUS" of each packet.
    static std::string Show(const std::vector<PACKET>& vecPacket) {
        std::string strShown;
        for (const PACKET& objPacket : vecPacket) {
            const auto nStatus = static_cast<unsigned>(objPacket.Header.Status);
            strShown +=
                std::to_string(objPacket.Header.PacketID) + (objPacket.Header.IsResent() ? ":again "
                                                             : nStatus != 0 ? ":" + std::to_string(nStatus) + " "
                                                                            : " ");
        }
        return strShown;
    }
    std::string Ask(std::uint64_t nBlockID, std::uint32_t nFirst, std::uint32_t nLast, std::size_t nAnswers) {
        Sender->Resend({0, nBlockID, nFirst, nLast, Settings.Format.ExtendedIDs});
        return Show(Catcher.Await([=](const auto& vecPacket) { return vecPacket.size() >= nAnswers; }));
    }

    /// How many packets have left, when all that was wanted before is done.
    std::size_t Fence() {
        Sender->SendTestPacket(Settings);
        return Catcher
                   .Await(
                       [](const auto& vecPacket) { return !vecPacket.empty() && vecPacket.back().Header.BlockID == 0; })
                   .size() -
               1;
    }

    CCatcher Catcher;
    camera::STREAM_SETTINGS Settings;
    std::optional<camera::CImageStream> Sender{std::in_place, Catcher, Catcher};
};

TEST_F(Stream, BlocksAreWholeAndBitExactInBothWidthsWithAndWithoutChunks) {
    for (int i = 0; i < 4; ++i) {
        Settings.Format.ExtendedIDs = i % 2 != 0;
        Settings.Format.Chunks = i / 2 != 0;
        Settings.Format.ChunkEnabled = {true, true, true};
        Sender->Open();
        Start(3);
        const auto vecPacket = Catcher.AwaitTrailers(3);
        EXPECT_EQ(Catcher.TakeNotes(), "end" + std::to_string(Settings.Acquisition) + " ");
        const camera::CTestImage objImage(Settings.Format.Image);
        std::vector<std::byte> vecWanted(objImage.GetSize());
        std::vector<std::byte> vecBlock;
        std::uint64_t nBlockID = 1;
        std::uint32_t nPacketID = 0;
        for (const PACKET& objPacket : vecPacket) {
            EXPECT_EQ(objPacket.Header.BlockID, nBlockID);
            EXPECT_EQ(objPacket.Header.PacketID, nPacketID++);
            EXPECT_EQ(objPacket.Header.ExtendedIDs, Settings.Format.ExtendedIDs);
            if (objPacket.Header.Format == EGvspFormat::Payload) {
                vecBlock.insert(vecBlock.end(), objPacket.Body.begin(), objPacket.Body.end());
            } else if (objPacket.Header.Format == EGvspFormat::Trailer) {
                gev::GVSP_TRAILER objTrailer;
                EXPECT_TRUE(gev::DecodeTrailer(objPacket.Body, objTrailer));
                EXPECT_EQ(objTrailer.ChunkDataLength, Settings.Format.Chunks ? 52u : 0u);
                gev::CChunkWalk objWalk(vecBlock);
                for (const std::uint32_t nID : {0x1003u, 0x1002u, 0x1001u, 0x1u}) {
                    const auto objChunk = objWalk.GetPrevious();
                    ASSERT_TRUE(!Settings.Format.Chunks || (objChunk && objChunk->ID == nID));
                    if (nID == 0x1001 && Settings.Format.Chunks) {
                        EXPECT_EQ(gev::Get64(vecBlock, objChunk->Offset), nBlockID);
                    }
                }
                objImage.Draw(nBlockID, vecWanted);
                EXPECT_TRUE(std::ranges::equal(std::span(vecBlock).first(vecWanted.size()), vecWanted));
                vecBlock.clear();
                ++nBlockID;
                nPacketID = 0;
            }
        }
        EXPECT_EQ(nBlockID, 4u);
    }
}

TEST_F(Stream, PacketsAreSentAgainWhileTheyAreThereAndRefusedByStatusElse) {
    const camera::FRAME_SETTINGS objFrame = Settings.Frame;
    for (const bool bExtendedIDs : {false, true}) {
        Settings.Format.ExtendedIDs = bExtendedIDs;
        Sender->Open();
        Start(2);
        ASSERT_EQ(Show(Catcher.AwaitTrailers(2)), "0 1 2 3 4 5 6 0 1 2 3 4 5 6 ");
        EXPECT_EQ(Ask(1, 2, 3, 2), "2:again 3:again ");
        EXPECT_EQ(Ask(2, 5, 0xFFFFFF, 2), "5:again 6:again ") << "no more than there is";
        EXPECT_EQ(Ask(2, 7, 9, 1), "7:32780 ") << "unavailable";
        EXPECT_EQ(Ask(3, 0, 1, 1), "1:32784 ") << "not yet available";
        Settings.Frame.Rate = 100'000;
        Start(1200);
        Catcher.AwaitTrailers(1200);
        EXPECT_EQ(Ask(1, 0, 4, 1), "4:32785 ") << "removed with all before";

        Settings.Frame.Trigger[camera::kTriggerFrameStart] = Settings.Frame.Event[camera::kEventFrameTrigger] = true;
        Settings.Frame.Exposure = 1h;
        Catcher.TakeNotes();
        Start(1);
        Sender->Trigger(camera::kTriggerFrameStart);
        Catcher.AwaitNote("event1/1203 ");
        EXPECT_EQ(Ask(1203, 0, 4, 1), "4:32784 ") << "still exposed";
        Settings.Frame = objFrame;
        Sender->Close();
        Sender->Resend({0, 1, 0, 0, bExtendedIDs});
        Catcher.AwaitNote("nowhere ");
    }
}

TEST_F(Stream, AcquisitionsEndWhenTheyAreToldTo) {
    Start(0);
    Catcher.AwaitTrailers(5);
    Sender->Stop();
    Start(1);  // begins behind the frame that is under way
    Catcher.AwaitNote("end2 ");
    EXPECT_EQ(Fence() % 7, 0u) << "whole frames alone";

    Catcher.TakeNotes();
    Settings.Frame.Trigger = {true, true};
    Settings.Frame.Event = {true, true};
    Sender->Open();
    Start(2);
    Sender->Trigger(camera::kTriggerFrameStart);
    Sender->Trigger(camera::kTriggerFrameStart);
    EXPECT_EQ(Fence(), 0u) << "the acquisition's trigger comes first";
    Sender->Trigger(camera::kTriggerAcquisitionStart);
    Catcher.AwaitTrailers(2);
    EXPECT_EQ(Catcher.TakeNotes(), "event1/1 event0/1 event1/2 event0/2 end3 ");

    Settings.Frame.Trigger = {};
    Settings.Frame.PacketDelay = 1h;
    Start(1);
    Catcher.Await([](const auto& vecPacket) { return !vecPacket.empty(); });
    Sender->Close();  // in the middle of the frame
    Settings.Frame.PacketDelay = 0h;
    Start(1);
    EXPECT_EQ(Show(Catcher.AwaitTrailers(1)), "0 1 2 3 4 5 6 ");
}

TEST(FaultyOutlet, DoesWhatItsFaultsAreCalledAndTheSameEachTime) {
    constexpr std::uint32_t kFrames = 400;
    constexpr std::uint32_t kCount = 7;  // packets of a frame
    struct CASE {
        const char* Fault;
        double Packets;  // that arrive, of all
        double Leaders;  // the same
    };
    const CASE arrCase[] = {{"seed=5", 1, 1},
                            {"loss=10", 0.9, 0.9},
                            {"lost-leader=20", 0.971, 0.8},
                            {"lost-trailer=100", 0.857, 1},
                            {"duplicate=50", 1.5, 1.5},
                            {"reorder=16", 1, 1},
                            {"wrong-size=30", 1, 1},
                            {"foreign=20", 1, 1},
                            {"stop-in-frame=201", 0.5, 0.5025},
                            {"loss-burst=8", 0.9, 0.9}};
    camera::BLOCK_FORMAT objFormat;
    objFormat.Image = {64, 32};
    objFormat.PacketSize = 512;
    for (const CASE& objCase : arrCase) {
        SCOPED_TRACE(objCase.Fault);
        camera::FAULTS objFaults;
        camera::SetFault(objFaults, objCase.Fault);
        objFaults.Stream.Loss = objFaults.Stream.LossBurst > 1 ? 10 : objFaults.Stream.Loss;
        std::string strFirst;
        for (int nRun = 0; nRun < 2; ++nRun) {
            CCatcher objCatcher;
            camera::CFaultyOutlet objFaulty(objCatcher);
            objFaulty.SetFaults(objFaults.Stream);
            camera::CSentBlocks objBlocks;
            objBlocks.SetFormat(objFormat);
            for (std::uint32_t i = 0; i < kFrames; ++i) {
                objBlocks.Begin();
                objBlocks.Finish({});
                for (std::uint32_t nPacketID = 0; nPacketID < kCount; ++nPacketID) {
                    camera::GvspHeaderBuffer arrHeader;
                    const auto objPacket = objBlocks.MakePacket(i + 1, nPacketID, false, arrHeader);
                    objFaulty.Send({&objPacket, 1}, kCount);
                }
            }
            // Either lets go what is held back.
            nRun == 0 ? objFaulty.Flush() : objFaulty.SetFaults({});
            const auto vecPacket = objCatcher.AwaitTrailers(0);
            const std::size_t nOdd =
                static_cast<std::size_t>(std::ranges::count_if(vecPacket, [](const auto& objPacket) {
                    return objPacket.Header.Format == EGvspFormat::Payload && objPacket.Body.size() != 476 &&
                           objPacket.Header.PacketID != 5;
                }));
            const auto placeOf = [](const PACKET& objPacket) {
                return std::pair(objPacket.Header.BlockID, objPacket.Header.PacketID);
            };
            std::size_t nBack = 0;
            for (std::size_t i = 1; i < vecPacket.size(); ++i) {
                nBack += placeOf(vecPacket[i]) < placeOf(vecPacket[i - 1]) ? 1 : 0;
            }
            std::string strShown = std::to_string(nOdd) + objCatcher.TakeNotes();
            for (const PACKET& objPacket : vecPacket) {
                strShown +=
                    std::to_string(objPacket.Header.BlockID) + "/" + std::to_string(objPacket.Header.PacketID) + " ";
            }
            EXPECT_TRUE(nRun == 0 || strShown == strFirst) << "the same seed, the same faults";
            strFirst = strShown;
            EXPECT_NEAR(static_cast<double>(vecPacket.size()) / kFrames / kCount, objCase.Packets, 0.04);
            EXPECT_NEAR(static_cast<double>(CCatcher::CountOf(vecPacket, EGvspFormat::Leader)) / kFrames,
                        objCase.Leaders, 0.07);
            EXPECT_EQ(nOdd > 300, objFaults.Stream.WrongSizes > 0);
            EXPECT_EQ(strShown.find("foreign") != std::string::npos, objFaults.Stream.Foreign > 0);
            EXPECT_EQ(nBack > 300, objFaults.Stream.Reorder != 0);
        }
    }
    camera::FAULTS objFaults;
    for (const char* pNone : {"loss", "loss=101", "loss=-1", "loss=nan", "reorder=65", "loss-burst=0", "seed="}) {
        EXPECT_THROW(camera::SetFault(objFaults, pNone), std::invalid_argument) << pNone;
    }
}

}  // namespace
