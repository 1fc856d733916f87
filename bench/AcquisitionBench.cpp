// What a frame costs from the event that brings it until its buffer is queued again, with a callback, against the same
// calls made straight to the producer.

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include <benchmark/benchmark.h>

#include "TLClass/TLClassEvent/INewBufferCallback.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "bench/Turns.h"
#include "support/Event.h"
#include "support/Thread.h"
#include "tests/TLClass/TreeOnDouble.h"

namespace {

using CLOCK = std::chrono::steady_clock;

std::atomic<std::uint64_t> g_nAllocations{0};  // of the process, by any operator new

}  // namespace

// Counts what is allocated, the producer's share included.
void* operator new(std::size_t nSize) {
    g_nAllocations.fetch_add(1, std::memory_order_relaxed);
    if (void* pMemory = std::malloc(nSize)) {
        return pMemory;
    }
    throw std::bad_alloc();
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"  // inlined, the pair looks like none
void operator delete(void* pMemory) noexcept {
    std::free(pMemory);
}

void operator delete(void* pMemory, std::size_t /*nSize*/) noexcept {
    std::free(pMemory);
}
#pragma GCC diagnostic pop

namespace {

constexpr int kFrames = 20000;
constexpr std::size_t kBuffers = 16;
constexpr std::size_t kFrameSize = 64;  // so small that its copy hides nothing

double SecondsAFrame(CLOCK::time_point tmStart) {
    return std::chrono::duration<double>(CLOCK::now() - tmStart).count() / kFrames;
}

/// Measures from the first of its frames to the last.
class CMeasure : public INewBufferCallback {
public:
    struct RESULT {
        CEvent objDone;
        double fSeconds = 0;
        std::uint64_t nAllocations = 0;
    };

    explicit CMeasure(RESULT* pResult) : m_pResult(pResult) {}
    IEventCallback* Clone() override { return new CMeasure(m_pResult); }
    void OnNewBuffer(const BUFFER_MODULE_INFO& objInformation) override {
        benchmark::DoNotOptimize(objInformation.SizeFilled);
        if (m_nFrames == 0) {
            m_nAllocations = g_nAllocations;
            m_tmStart = CLOCK::now();
        }
        if (m_nFrames++ == kFrames) {
            m_pResult->fSeconds = SecondsAFrame(m_tmStart);
            m_pResult->nAllocations = g_nAllocations - m_nAllocations;
            m_pResult->objDone.Signal();
        }
    }

private:
    RESULT* m_pResult;
    int m_nFrames = 0;
    std::uint64_t m_nAllocations = 0;
    CLOCK::time_point m_tmStart;
};

void RunCallbacks(IDataStream& objStream, CMeasure::RESULT& objResult) {
    TLClass::CBufferInitInfo objInfo;
    objInfo.SetPayloadSize(kFrameSize);
    CMeasure objMeasure(&objResult);
    objStream.SetAcqusitionBufferNumber(kBuffers);
    objStream.RegisterNewBufferCallback(&objMeasure);
    objStream.DoStartDataStreamAcqusition(&objInfo);
    objResult.objDone.Wait(60000);
    objStream.StopGetNewBuffer();
    objStream.StopTLAcquisition();
}

/// The calls for one frame, and nothing beside them.
void TakeDirectly(CGenTLLib& objLib, DS_HANDLE hStream, EVENT_HANDLE hEvent) {
    constexpr std::array arrCommand{
        BUFFER_INFO_BASE,        BUFFER_INFO_SIZE,         BUFFER_INFO_SIZE_FILLED,
        BUFFER_INFO_WIDTH,       BUFFER_INFO_HEIGHT,       BUFFER_INFO_XOFFSET,
        BUFFER_INFO_YOFFSET,     BUFFER_INFO_XPADDING,     BUFFER_INFO_YPADDING,
        BUFFER_INFO_IMAGEOFFSET, BUFFER_INFO_PAYLOADTYPE,  BUFFER_INFO_TIMESTAMP,
        BUFFER_INFO_FRAMEID,     BUFFER_INFO_PIXELFORMAT,  BUFFER_INFO_PIXELFORMAT_NAMESPACE,
        BUFFER_INFO_USER_PTR,    BUFFER_INFO_IS_INCOMPLETE};
    EVENT_NEW_BUFFER_DATA objData{};
    std::size_t nSize = sizeof(objData);
    objLib.EventGetData(hEvent, &objData, &nSize, 1000);
    for (const BUFFER_INFO_CMD nCommand : arrCommand) {
        INFO_DATATYPE nType = INFO_DATATYPE_UNKNOWN;
        std::uint64_t nAnswer = 0;
        std::size_t nAnswerSize = sizeof(nAnswer);
        objLib.DSGetBufferInfo(hStream, objData.BufferHandle, nCommand, &nType, &nAnswer, &nAnswerSize);
        benchmark::DoNotOptimize(nAnswer);
    }
    objLib.DSQueueBuffer(hStream, objData.BufferHandle);
}

double RunDirectly(CGenTLLib& objLib, DEV_HANDLE hDevice) {
    DS_HANDLE hStream = nullptr;
    EVENT_HANDLE hEvent = nullptr;
    objLib.DevOpenDataStream(hDevice, "stream-1", &hStream);
    objLib.GCRegisterEvent(hStream, EVENT_NEW_BUFFER, &hEvent);
    std::vector<std::array<std::uint8_t, kFrameSize>> vecMemory(kBuffers);
    for (auto& arrMemory : vecMemory) {
        BUFFER_HANDLE hBuffer = nullptr;
        objLib.DSAnnounceBuffer(hStream, arrMemory.data(), arrMemory.size(), &arrMemory, &hBuffer);
    }
    objLib.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT);
    objLib.DSStartAcquisition(hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE);
    TakeDirectly(objLib, hStream, hEvent);
    const auto tmStart = CLOCK::now();
    for (int nFrame = 0; nFrame < kFrames; ++nFrame) {
        TakeDirectly(objLib, hStream, hEvent);
    }
    const double fSeconds = SecondsAFrame(tmStart);
    objLib.GCUnregisterEvent(hStream, EVENT_NEW_BUFFER);
    objLib.DSClose(hStream);
    return fSeconds;
}

/// On a thread of the priority that the thread of the callbacks has.
double RunDirectlyOnAThread(IDevice& objDevice) {
    struct JOB {
        IDevice& objDevice;
        double fSeconds = 0;
    } objJob{objDevice};
    CThread objThread;
    objThread.Start(
        &objJob,
        [](void* pJob) {
            auto& objOwn = *static_cast<JOB*>(pJob);
            objOwn.fSeconds = RunDirectly(*objOwn.objDevice.GetLib(), objOwn.objDevice.GetHandle());
            return std::uint32_t{0};
        },
        kPriorityTimeCritical);
    objThread.Join();
    return objJob.fSeconds;
}

void FrameByCallback(benchmark::State& objState) {
    const CTreeOnDouble objTree;
    objTree.Init();
    const auto pInterface = objTree.AddInterface("if-1");
    auto& objCamera = objTree.Double().Interface("if-1").Plug("cam-1");
    ProducerDouble::FRAME objFrame;
    objFrame.vecData.resize(kFrameSize);
    objCamera.Stream().FlowFrames(objFrame);
    objCamera.AddStream("stream-1").FlowFrames(objFrame);
    UpdateDevices(*pInterface);
    const auto pDevice = pInterface->GetDeviceList().at(0);
    pDevice->DoOpenDevice(DEVICE_ACCESS_CONTROL);
    const auto pStream = pDevice->GetDataStreamList().at(0);
    pStream->DoOpenDataStream();
    objTree.Double().RecordCalls(false);
    CTurns objTurns;
    std::uint64_t nAllocations = 0;
    for (auto _ : objState) {
        CMeasure::RESULT objResult;
        RunCallbacks(*pStream, objResult);
        if (objResult.fSeconds == 0) {
            objState.SkipWithError("the frames didn't come");
            break;
        }
        nAllocations = std::max(nAllocations, objResult.nAllocations);
        objTurns.Add(objResult.fSeconds, RunDirectlyOnAThread(*pDevice));
    }
    Report(objTurns.GetFastest("frame by callback, event to requeue", AtMost(1.2)));
    Report({"allocations in 20,000 such frames", static_cast<double>(nAllocations), 0, AtMost(0), ""});
}
BENCHMARK(FrameByCallback)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();

}  // namespace
