// Images of a camera at the other end of a cable, through the module tree and the bundled producer: by a callback and
// by polling, started and stopped without end, and cut off in every way.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "camera/TestImage.h"
#include "support/Event.h"
#include "tests/TLClass/FunctionCallback.h"
#include "tests/network/WireCapture.h"
#include "tests/producer/entries/TreeTest.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kLongEnoughMs = 5000;
constexpr std::uint32_t kFrameTimeoutMs = 2000;
constexpr std::uint32_t kWidth = 128;
constexpr std::uint32_t kHeight = 96;

/// Compares frames with what the camera draws. One thread at a time hands them over.
class CFrameCheck {
public:
    void Add(const BUFFER_MODULE_INFO& objFrame) {
        const std::span arrImage(static_cast<const std::byte*>(objFrame.Base), m_objImage.GetSize());
        m_objImage.Draw(m_objImage.ReadFrameNumber(arrImage), m_vecDrawn);
        const bool bWrong = !objFrame.IsIncomplete && !std::ranges::equal(arrImage, m_vecDrawn);
        m_nWrong += bWrong ? 1 : 0;
        m_objFrame.Signal();
    }
    bool AwaitFrame() { return m_objFrame.Wait(kFrameTimeoutMs); }
    /// Complete by their own account, and not as they were drawn.
    int GetWrong() const { return m_nWrong; }

private:
    const camera::CTestImage m_objImage{{kWidth, kHeight}};
    std::vector<std::byte> m_vecDrawn = std::vector<std::byte>(m_objImage.GetSize());
    std::atomic<int> m_nWrong = 0;
    CEvent m_objFrame;
};

class CameraStream : public ProducerTree {
protected:
    void Plug(const camera::STREAM_FAULTS& objFaults = {}) {
        camera::CAMERA_CONFIGURATION objConfiguration = CameraAt("10.1.0.2/24");
        objConfiguration.Faults.Stream = objFaults;
        m_objCamera.emplace(*m_objFar, objConfiguration);
        bool bChanged = false;
        Interface(0)->DoUpdateDeviceList(200, &bChanged);
        m_pDevice = Interface(0)->GetDeviceList().at(0);
        Open();
    }

    void Open() {
        m_pDevice->DoOpenDevice(DEVICE_ACCESS_CONTROL);
        m_pStream = m_pDevice->GetDataStreamList().at(0);
        m_pStream->DoOpenDataStream();
        Remote().DoSetInt("Width", kWidth);
        Remote().DoSetInt("Height", kHeight);
        Remote().DoSetFloat("AcquisitionFrameRate", 1000);
    }

    void TearDown() override {
        m_pStream.reset();
        m_pDevice.reset();
        ProducerTree::TearDown();
        m_objCamera.reset();
    }

    IFeatureControl& Remote() const { return *m_pDevice->GetRemoteFeatureControl(); }

    void Start(bool bCallback) {
        CFrameFunction objCallback([this](const BUFFER_MODULE_INFO& objFrame) { m_objCheck.Add(objFrame); });
        bCallback ? m_pStream->RegisterNewBufferCallback(&objCallback) : m_pStream->UnregisterNewBufferCallback();
        TLClass::CBufferInitInfo objInfo;
        objInfo.SetPayloadSize(static_cast<std::uint64_t>(Remote().DoGetInt("PayloadSize")));
        m_pStream->DoStartDataStreamAcqusition(&objInfo);
        Remote().DoSendCommand("AcquisitionStart");
    }

    /// @return whether one came in time
    bool Take(bool bCallback) {
        if (!bCallback) {
            BUFFER_MODULE_INFO objFrame;
            CBuffer* const pBuffer = m_pStream->GetBuffer(&objFrame, kFrameTimeoutMs, false);
            if (pBuffer == nullptr) {
                return false;
            }
            m_objCheck.Add(objFrame);
            pBuffer->QueueBuffer();
        }
        return m_objCheck.AwaitFrame();
    }

    void Stop() {
        Remote().DoSendCommand("AcquisitionStop");
        m_pStream->StopGetNewBuffer();
        m_pStream->StopTLAcquisition();
    }

    CFrameCheck m_objCheck;  // outlives the stream, which calls it
    std::optional<CRunningCamera> m_objCamera;
    boost::shared_ptr<IDevice> m_pDevice;
    boost::shared_ptr<IDataStream> m_pStream;
};

TEST_F(CameraStream, StartsAgainAndAgainHoweverItWasEnded) {
    Plug();
    for (int i = 0; i < 120; ++i) {
        const bool bCallback = i % 2 == 0;
        Start(bCallback);
        ASSERT_TRUE(Take(bCallback)) << i;
        if (i % 12 >= 4) {
            Stop();
        } else if (i % 12 >= 2) {
            m_pStream->DoCloseDataStream();
            m_pStream->DoOpenDataStream();
            Remote().DoSendCommand("AcquisitionStop");
        } else {
            m_pDevice->DoCloseDevice();
            Open();
        }
    }
    EXPECT_EQ(m_objCheck.GetWrong(), 0);
}

TEST_F(CameraStream, IsUnpluggedWhileFramesFlow) {
    CEvent objOffline;
    COfflineSignal objCallback(objOffline);
    for (const bool bCallback : {true, false}) {
        Plug();
        Features(*m_pDevice).DoSetFloat("DeviceLinkHeartbeatTimeout", 500'000);
        m_pDevice->RegisterDeviceOfflineCallback(&objCallback);
        Start(bCallback);
        ASSERT_TRUE(Take(bCallback));
        m_objCamera.reset();
        const auto tmStart = Clock::now();
        while (!bCallback && Take(bCallback)) {
            // those that had come
        }
        EXPECT_TRUE(objOffline.Wait(kLongEnoughMs));
        m_pDevice->DoCloseDevice();
        EXPECT_FALSE(m_pStream->IsOpened());
        EXPECT_LT(Clock::now() - tmStart, std::chrono::seconds(9));
    }
    EXPECT_EQ(m_objCheck.GetWrong(), 0);
}

TEST_F(CameraStream, ProtocolAnalyserUnderstandsEveryDatagramOfIt) {
    if (std::system("command -v tshark >/dev/null") != 0) {
        GTEST_SKIP() << "no protocol analyser is installed (package tshark)";
    }
    Plug({.Loss = 10});
    m_pDevice->StartRemoteDeviceEvent();
    const auto Set = [&](const char* pName, const char* pEntry) {
        Remote().DoSetEnum(pName, Remote().DoGetEnumEntryValue(pName, pEntry));
    };
    Remote().DoSetFloat("AcquisitionFrameRate", 100);
    Remote().DoSetBool("ChunkModeActive", true);
    for (const char* pChunk : {"FrameID", "Timestamp", "ExposureTime"}) {
        Set("ChunkSelector", pChunk);
        Remote().DoSetBool("ChunkEnable", true);
    }
    for (const char* pEvent : {"ExposureEnd", "FrameTrigger"}) {
        Set("EventSelector", pEvent);
        Set("EventNotification", "On");
    }
    CWireCapture objWire(*m_objMachine, "eth0", *m_objFar, "far0");
    Start(false);
    const auto nImagePort = Remote().DoGetInt("GevSCPHostPort");
    const auto nEventPort = Remote().DoGetInt("GevMCPHostPort");
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(Take(false));
    }
    Stop();

    const auto vecDatagrams = objWire.TakeAll();
    const auto vecLines =
        Analyse(vecDatagrams, "-d udp.port==" + std::to_string(nImagePort) +
                                  ",gvsp -d udp.port==" + std::to_string(nEventPort) +
                                  ",gvcp -T fields -E separator=/s -e _ws.col.Protocol -e gvcp.cmd.command -e gvcp.ack"
                                  " -e gvsp.format -e gvsp.payloadtype -e _ws.malformed -e _ws.expert.message");
    EXPECT_EQ(vecLines.size(), vecDatagrams.size());
    // Registers, resend requests, both kinds of events with their acknowledges, and blocks with chunks from leader to
    // trailer. No line may end in a complaint.
    EXPECT_EQ(
        std::set(vecLines.begin(), vecLines.end()),
        (std::set<std::string>{"GVCP 0x0040     ", "GVCP 0x0080     ", "GVCP  0x0081    ", "GVCP 0x0082     ",
                               "GVCP  0x0083    ", "GVCP 0x00c0     ", "GVCP  0x00c1    ", "GVCP 0x00c2     ",
                               "GVCP  0x00c3    ", "GVSP   0x01 0x4001  ", "GVSP   0x02 0x4001  ", "GVSP   0x03   "}));
}

}  // namespace
