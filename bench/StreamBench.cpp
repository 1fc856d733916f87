// Images over a cable between two machines of the bench's own: the producer's receiver against a bare loop that
// receives and copies the same packets of the same sender, and a bare ring against the same loop. All run at the
// priority that the producer asks for, in turns.

#include <algorithm>
#include <ctime>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/BareReceiver.h"
#include "bench/Figure.h"
#include "bench/StreamSender.h"
#include "gev/GvspHeader.h"
#include "producer/modules/BufferPool.h"
#include "producer/modules/EventQueue.h"
#include "producer/stream/StreamReceiver.h"
#include "producer/stream/StreamSocket.h"
#include "producer/wire/AdapterSocket.h"
#include "support/Thread.h"
#include "tests/network/NetworkNamespace.h"

namespace {

using namespace producer;

constexpr std::uint32_t kNear = 0x0A010001;
constexpr std::uint32_t kFar = 0x0A010002;
constexpr std::size_t kImageSize = 1280 * 1024;
constexpr std::size_t kBuffers = 4;
constexpr std::size_t kReceiveBuffer = std::size_t{32} << 20U;

struct RUN {
    double Rate = 0;       // bytes of payload a second
    double CpuTime = 0;    // nanoseconds of the receiver for each byte
    double WholeTime = 0;  // with the sender's, which holds what the kernel does for the receiver
};

std::int64_t ProcessTime() {
    timespec objTime{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &objTime);
    return objTime.tv_sec * 1'000'000'000 + objTime.tv_nsec;
}

/// Two machines and a cable; the calling thread and all that it starts are on the near one.
class CBenchCable {
public:
    CBenchCable() {
        m_objNear.Enter();
        Connect(m_objNear, "eth0", "10.1.0.1/24", m_objFar, "far0", "10.1.0.2/24");
        m_objNear.Run("ip link set eth0 mtu 9000");
        m_objFar.Run("ip link set far0 mtu 9000");
        m_objAdapter = FindAdapter("eth0").value();
    }
    CNetworkNamespace m_objNear;
    CNetworkNamespace m_objFar;
    ADAPTER m_objAdapter;
};

CBenchCable& Cable() {
    static CBenchCable objCable;
    return objCable;
}

/// The producer's receiver with a consumer that gives every buffer back at once.
class CProducerLoop : private IBlockSink {
public:
    explicit CProducerLoop(std::size_t nPacketSize)
        : m_vecImage(kBuffers * kImageSize),
          m_objSocket(Cable().m_objAdapter, kNear, kFar, kReceiveBuffer),
          m_objReceiver(m_objSocket, *this, {.PacketSize = nPacketSize, .Resend = false}),
          m_nBytesAPacket(gev::GetPayloadPerPacket(nPacketSize, false)) {}
    ~CProducerLoop() override { m_objReceiver.Stop(true); }
    std::uint16_t GetPort() const { return m_objSocket.GetLocalPort(); }
    std::uint64_t GetBytes() const { return m_objReceiver.GetStatistics().Packets * m_nBytesAPacket; }

private:
    BLOCK_MEMORY TakeMemory() override {
        std::byte* const pMemory = &m_vecImage[m_nNext++ % kBuffers * kImageSize];
        return {{pMemory, kImageSize}, pMemory};
    }
    void ReturnMemory(const BLOCK_MEMORY&) override {}
    void DeliverBlock(const FINISHED_BLOCK&) override {}
    void RequestResend(std::uint64_t, std::uint32_t, std::uint32_t, bool) override {}

    std::vector<std::byte> m_vecImage;
    std::size_t m_nNext = 0;
    CStreamSocket m_objSocket;
    CStreamReceiver m_objReceiver;
    const std::uint64_t m_nBytesAPacket;
};

std::unique_ptr<CBareLoop> MakeBareLoop(const SENDER_SETTINGS& objSettings) {
    return std::make_unique<CBareLoop>(objSettings.PacketSize, kImageSize, kNear, kReceiveBuffer);
}

std::unique_ptr<CBareRing> MakeBareRing(const SENDER_SETTINGS& objSettings) {
    return std::make_unique<CBareRing>(objSettings.PacketSize, kImageSize, kNear, kReceiveBuffer, "eth0");
}

std::unique_ptr<CProducerLoop> MakeProducerLoop(const SENDER_SETTINGS& objSettings) {
    return std::make_unique<CProducerLoop>(objSettings.PacketSize);
}

template <class Loop>
RUN Measure(std::unique_ptr<Loop> pLoop, SENDER_SETTINGS objSettings) {
    objSettings.Port = pLoop->GetPort();
    const auto objStart = std::chrono::steady_clock::now();
    const std::int64_t nCpu = ProcessTime();
    const std::int64_t nSender = SendImages(Cable().m_objFar, objSettings, nullptr);
    // What the socket still holds belongs to the run.
    std::uint64_t nBytes = 0;
    auto objEnd = std::chrono::steady_clock::now();
    for (auto objNow = objEnd; objNow - objEnd < std::chrono::milliseconds(20);
         objNow = std::chrono::steady_clock::now()) {
        if (const std::uint64_t nNow = pLoop->GetBytes(); nNow != nBytes) {
            nBytes = nNow;
            objEnd = objNow;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const std::chrono::duration<double> objElapsed = objEnd - objStart;
    const auto nWhole = static_cast<double>(ProcessTime() - nCpu);
    const auto nTaken = static_cast<double>(nBytes);
    return {nTaken / objElapsed.count(), (nWhole - static_cast<double>(nSender)) / nTaken, nWhole / nTaken};
}

double Percentile(std::vector<double> vecValue, std::size_t nPercent) {
    std::ranges::sort(vecValue);
    return vecValue[(vecValue.size() - 1) * nPercent / 100];
}

double Median(const std::vector<double>& vecValue) {
    return Percentile(vecValue, 50);
}

/// What came of many pairs of runs, one behind the other, so that both meet the same disturbances.
struct RATIOS {
    std::vector<double> Rate;
    std::vector<double> CpuTime;
    std::vector<double> WholeTime;

    void Add(const RUN& objRun, const RUN& objBare) {
        Rate.push_back(objRun.Rate / objBare.Rate);
        CpuTime.push_back(objRun.CpuTime / objBare.CpuTime);
        WholeTime.push_back(objRun.WholeTime / objBare.WholeTime);
    }
};

/// Arguments: packet size; whether the sender's packets may stay joined on their way.
void StreamThroughput(benchmark::State& objState) {
    Cable();  // before the first socket, which belongs to the machine that its thread is on
    SENDER_SETTINGS objSettings;
    objSettings.Address = kNear;
    objSettings.Frames = 50;
    objSettings.PacketSize = static_cast<std::size_t>(objState.range(0));
    objSettings.Joined = objState.range(1) != 0;
    std::vector<double> vecBareRate;
    std::vector<double> vecBareCpu;
    std::vector<double> vecBareWhole;
    RATIOS objProducer;
    RATIOS objRing;
    for (auto _ : objState) {
        const RUN objBare = Measure(MakeBareLoop(objSettings), objSettings);
        objProducer.Add(Measure(MakeProducerLoop(objSettings), objSettings), objBare);
        objRing.Add(Measure(MakeBareRing(objSettings), objSettings), objBare);
        vecBareRate.push_back(objBare.Rate / 1e6);
        vecBareCpu.push_back(objBare.CpuTime);
        vecBareWhole.push_back(objBare.WholeTime);
    }
    const std::string strOf = " of " + std::to_string(objSettings.PacketSize) + "-byte packets, " +
                              (objSettings.Joined ? "joined" : "singly");
    const auto ReportRatio = [&](const char* pName, const std::vector<double>& vecRatio,
                                 const std::vector<double>& vecBare, const char* pUnit, GOAL objGoal) {
        const double fRatio = Median(vecRatio);
        const double fBare = Median(vecBare);
        Report({pName + strOf, fRatio * fBare, fBare, objGoal, pUnit, fRatio});
    };
    ReportRatio("rate", objProducer.Rate, vecBareRate, "MB/s", AtLeast(0.95));
    ReportRatio("processor time", objProducer.CpuTime, vecBareCpu, "ns/byte", AtMost(1.15));
    ReportRatio("whole processor time", objProducer.WholeTime, vecBareWhole, "ns/byte", {});
    ReportRatio("a ring's rate", objRing.Rate, vecBareRate, "MB/s", {});
    ReportRatio("a ring's whole processor time", objRing.WholeTime, vecBareWhole, "ns/byte", {});
}
BENCHMARK(StreamThroughput)
    ->ArgNames({"packet", "joined"})
    ->ArgsProduct({{1500, 9000}, {0, 1}})
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

std::int64_t Now() {
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

/// Seconds from the sending of each trailer to a second thread that has its image.
template <class Loop>
std::vector<double> MeasureLatency(std::unique_ptr<Loop> pLoop, SENDER_SETTINGS objSettings) {
    std::vector<double> vecLatency;
    TrailerTimes vecTimes(objSettings.Frames + 1);
    objSettings.Port = pLoop->GetPort();
    std::thread objSender([&] { SendImages(Cable().m_objFar, objSettings, &vecTimes); });
    for (unsigned nBlock = 0; nBlock < objSettings.Frames;) {
        nBlock = pLoop->WaitForBlock();
        vecLatency.push_back(static_cast<double>(Now() - vecTimes[nBlock]) / 1e9);
    }
    objSender.join();
    return vecLatency;
}

class CDirectSink : private CEventSource, public CBufferPool {
public:
    CDirectSink() : CBufferPool(GetEvents()) {
        Offer(EVENT_NEW_BUFFER, sizeof(EVENT_NEW_BUFFER_DATA), CBufferPool::kMostBuffers);
        m_pQueue = CHandleTable::Get().Require<CEventQueue>(Register(EVENT_NEW_BUFFER));
        for (std::size_t i = 0; i < kBuffers; ++i) {
            Queue(Announce(std::make_shared<CStreamBuffer>(kImageSize, nullptr)));
        }
        Start(GENTL_INFINITE, 0);
    }
    CEventSource& GetEvents() { return *this; }
    std::shared_ptr<CEventQueue> m_pQueue;
};

std::vector<double> MeasureProducerLatency(SENDER_SETTINGS objSettings) {
    std::vector<double> vecLatency;
    TrailerTimes vecTimes(objSettings.Frames + 1);
    CDirectSink objPool;
    CStreamSocket objSocket(Cable().m_objAdapter, kNear, kFar, kReceiveBuffer);
    CStreamReceiver objReceiver(objSocket, objPool, {.PacketSize = objSettings.PacketSize, .Resend = false});
    objSettings.Port = objSocket.GetLocalPort();
    std::thread objSender([&] { SendImages(Cable().m_objFar, objSettings, &vecTimes); });
    for (std::size_t i = 1; i <= objSettings.Frames; ++i) {
        EVENT_NEW_BUFFER_DATA objData{};
        std::size_t nSize = sizeof objData;
        objPool.m_pQueue->GetData(&objData, &nSize, 10'000);
        vecLatency.push_back(static_cast<double>(Now() - vecTimes[i]) / 1e9);
        objPool.Queue(objData.BufferHandle);
    }
    objSender.join();
    objReceiver.Stop(false);
    return vecLatency;
}

/// Of each turn its middle and its 99th percentile. The middle turn counts: a machine that does something else for a
/// moment makes one turn's last images late by far, and not the others'.
struct LATENCIES {
    void Add(const std::vector<double>& vecLatency) {
        Middle.push_back(Median(vecLatency));
        Late.push_back(Percentile(vecLatency, 99));
    }
    std::vector<double> Middle;
    std::vector<double> Late;
};

/// Argument: packet size.
void StreamLatency(benchmark::State& objState) {
    Cable();  // before the first socket, which belongs to the machine that its thread is on
    SENDER_SETTINGS objSettings;
    objSettings.Address = kNear;
    objSettings.Frames = 100;
    objSettings.PacketSize = static_cast<std::size_t>(objState.range(0));
    objSettings.Pause = std::chrono::milliseconds(3);
    LATENCIES objBare;
    LATENCIES objProducer;
    LATENCIES objRing;
    for (auto _ : objState) {
        objBare.Add(MeasureLatency(MakeBareLoop(objSettings), objSettings));
        objProducer.Add(MeasureProducerLatency(objSettings));
        objRing.Add(MeasureLatency(MakeBareRing(objSettings), objSettings));
    }
    const std::string strOf = " of " + std::to_string(objSettings.PacketSize) + "-byte packets";
    Report({"last packet to waiting thread" + strOf, Median(objProducer.Middle), Median(objBare.Middle), AtMost(1.2)});
    Report({"the same, 99th percentile", Median(objProducer.Late), Median(objBare.Late), AtMost(1.5)});
    Report({"the same through a ring", Median(objRing.Middle), Median(objBare.Middle), {}});
}
BENCHMARK(StreamLatency)->ArgName("packet")->Arg(1500)->Arg(9000)->Iterations(15)->Unit(benchmark::kMillisecond);

}  // namespace
