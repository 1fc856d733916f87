// grab-images: takes images from a camera, tells about each and how many were lost.
//
//     grab-images [CAMERA [COUNT]] [--poll]
//
// CAMERA is an ID, a serial number or a user's name, as list-cameras shows them; left out or "", the first one that has
// answered. COUNT is 10 if left out. The camera keeps its settings: open-and-configure changes some of them.
//
// Set GENICAM_GENTL64_PATH to the folder of ZrGVTL.cti first.

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "TLClass/TLClassEvent/INewBufferCallback.h"
#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "examples/Session.h"
#include "support/Event.h"

namespace {

constexpr const char* kProgram = "grab-images";
constexpr const char* kUsage = "Usage: grab-images [CAMERA [COUNT]] [--poll]   (COUNT: 1 to 1000000; 10 if left out)\n";
constexpr std::uint32_t kLongestWaitMs = 5000;

/// What came so far, counted by the thread that takes the frames.
class CTaken {
public:
    explicit CTaken(std::uint64_t nWanted) : m_nWanted(nWanted) {}

    void Add(const BUFFER_MODULE_INFO& objFrame) {
        if (IsEnough()) {
            return;  // the camera doesn't stop at once
        }
        // A camera numbers its frames, so one that got lost as a whole leaves a gap. (Older cameras begin anew behind
        // 65535, which isn't counted here.)
        if (m_nFrames != 0 && objFrame.FrameID > m_nLastID) {
            m_nLost += objFrame.FrameID - m_nLastID - 1;
        }
        m_nLastID = objFrame.FrameID;
        m_nIncomplete += objFrame.IsIncomplete ? 1 : 0;
        // The frame is objFrame.SizeFilled bytes at objFrame.Base, chunks behind the image included, but only here: who
        // needs it later copies it. What takes long belongs on another thread, or the stream runs out of buffers and
        // frames are lost.
        std::cout << "frame " << objFrame.FrameID << ": " << objFrame.Width << " x " << objFrame.Height << ", "
                  << objFrame.SizeFilled << " bytes" << (objFrame.IsIncomplete ? ", incomplete" : "") << '\n';
        ++m_nFrames;
        m_objFrame.Signal();
    }

    bool IsEnough() const { return m_nFrames == m_nWanted; }

    /// For another thread than the one that takes the frames.
    /// @throws std::runtime_error  none has come for a long time
    void AwaitAll() {
        while (!IsEnough()) {
            if (!m_objFrame.Wait(kLongestWaitMs) && !IsEnough()) {
                throw std::runtime_error("the camera sends no more frames");
            }
        }
    }

    /// For when no more frames are taken.
    void Print() const {
        std::cout << m_nFrames << " frames, " << m_nLost << " lost, " << m_nIncomplete << " incomplete\n";
    }

private:
    const std::uint64_t m_nWanted;
    std::atomic<std::uint64_t> m_nFrames = 0;
    std::uint64_t m_nLost = 0, m_nIncomplete = 0, m_nLastID = 0;
    CEvent m_objFrame;  // signalled with each frame
};

/// Called on a thread of the stream with each frame. The stream keeps a clone, so this refers to what it fills.
class CCallback : public INewBufferCallback {
public:
    explicit CCallback(CTaken& objTaken) : m_objTaken(objTaken) {}
    IEventCallback* Clone() override { return new CCallback(*this); }
    void OnNewBuffer(const BUFFER_MODULE_INFO& objFrame) override { m_objTaken.Add(objFrame); }

private:
    CTaken& m_objTaken;
};

/// Without a callback, a program asks for the frames itself, and gives each buffer back when it is done with it.
void Poll(IDataStream& objStream, CTaken& objTaken) {
    while (!objTaken.IsEnough()) {
        BUFFER_MODULE_INFO objFrame;
        CBuffer* const pBuffer = objStream.GetBuffer(&objFrame, kLongestWaitMs, true);
        objTaken.Add(objFrame);
        pBuffer->QueueBuffer();
    }
}

void Grab(const COpenCamera& objCamera, CTaken& objTaken, bool bPoll) {
    const auto vecStream = objCamera.GetDevice()->GetDataStreamList();
    if (vecStream.empty()) {
        throw std::runtime_error("the camera has no data stream");
    }
    IDataStream& objStream = *vecStream.front();
    objStream.DoOpenDataStream();
    CCallback objCallback(objTaken);
    if (!bPoll) {
        objStream.RegisterNewBufferCallback(&objCallback);
    }
    // The receiver starts before the camera, so that it doesn't miss the first frame, and stops after it.
    TLClass::CBufferInitInfo objInitInfo;
    objInitInfo.SetPayloadSize(static_cast<std::uint64_t>(objCamera.GetFeatures().DoGetInt("PayloadSize")));
    objStream.DoStartDataStreamAcqusition(&objInitInfo);
    objCamera.GetFeatures().DoSendCommand("AcquisitionStart");
    bPoll ? Poll(objStream, objTaken) : objTaken.AwaitAll();
    objCamera.GetFeatures().DoSendCommand("AcquisitionStop");
    objStream.DoCloseDataStream();  // whatever was thrown before this, closing the camera closes its stream first
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> vecArgument(argv + (argc > 0 ? 1 : 0), argv + argc);
    const bool bPoll = std::erase(vecArgument, "--poll") != 0;
    vecArgument.resize(std::max<std::size_t>(vecArgument.size(), 2));
    std::uint64_t nFrames = 10;
    const std::string& strCount = vecArgument[1];
    const auto [pEnd, nError] = std::from_chars(strCount.data(), strCount.data() + strCount.size(), nFrames);
    const bool bHelp = vecArgument[0] == "--help";
    if (bHelp || vecArgument.size() > 2 || pEnd != strCount.data() + strCount.size() || nFrames - 1 >= 1'000'000) {
        (bHelp ? std::cout : std::cerr) << kUsage;
        return bHelp ? 0 : 2;
    }
    return RunExample(kProgram, [&] {
        const CSession objSession{std::chrono::milliseconds(500)};
        CTaken objTaken(nFrames);
        const std::string& strName = vecArgument[0];
        const COpenCamera objCamera(strName.empty() ? objSession.FindAnyCamera() : objSession.FindCamera(strName));
        Grab(objCamera, objTaken, bPoll);
        objTaken.Print();
    });
}
