// Images over a cable between two machines of the bench's own: the producer's receiver against a bare loop that
// receives and copies the same packets of the same sender. Both run at the priority that the producer asks for, in
// turns.

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "bench/StreamSender.h"
#include "gev/GvspHeader.h"
#include "producer/modules/EventQueue.h"
#include "producer/stream/BufferPool.h"
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
    double Rate = 0;     // bytes of payload a second
    double CpuTime = 0;  // nanoseconds of the receiver for each byte
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

/// The barest receiver that puts packets to their places: one call of the kernel and one copy for each.
class CBareLoop {
public:
    explicit CBareLoop(std::size_t nPacketSize) : m_nPayload(gev::GetPayloadPerPacket(nPacketSize, false)) {
        m_nSocket = socket(AF_INET, SOCK_DGRAM, 0);
        const int nBuffer = static_cast<int>(kReceiveBuffer);
        setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUFFORCE, &nBuffer, sizeof nBuffer);
        sockaddr_in objAddress{};
        objAddress.sin_family = AF_INET;
        objAddress.sin_addr.s_addr = htonl(kNear);
        bind(m_nSocket, reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress);
        socklen_t nSize = sizeof objAddress;
        getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&objAddress), &nSize);
        m_nPort = ntohs(objAddress.sin_port);
        m_vecImage.resize(kBuffers * kImageSize);
        m_objThread.Start(
            this,
            [](void* pArg) -> std::uint32_t {
                static_cast<CBareLoop*>(pArg)->Run();
                return 0;
            },
            kPriorityTimeCritical);
    }
    ~CBareLoop() {
        m_bStop = true;
        shutdown(m_nSocket, SHUT_RD);
        m_objThread.Join();
        close(m_nSocket);
    }
    std::uint16_t GetPort() const { return m_nPort; }
    std::uint64_t GetBytes() const { return m_nBytes; }

    // Its callback: the number of the block, on a second thread.
    std::atomic<std::int64_t>* WaitForBlock(std::vector<std::atomic<std::int64_t>>& vecTimes) {
        std::unique_lock objLock(m_mtxDone);
        m_objDone.wait(objLock, [&] { return m_nDone != 0; });
        return &vecTimes[std::exchange(m_nDone, 0)];
    }

private:
    void Run() {
        std::array<unsigned char, 65536> arrPacket;
        while (!m_bStop) {
            const ssize_t nSize = recv(m_nSocket, arrPacket.data(), arrPacket.size(), 0);
            if (nSize <= 8) {
                continue;
            }
            const unsigned nBlock = arrPacket[2] << 8U | arrPacket[3];
            const std::size_t nPacket = std::size_t{arrPacket[5]} << 16U | arrPacket[6] << 8U | arrPacket[7];
            const std::size_t nOffset = (nPacket - 1) * m_nPayload;
            if (arrPacket[4] == 3 && nOffset + static_cast<std::size_t>(nSize) - 8 <= kImageSize) {
                std::memcpy(&m_vecImage[nBlock % kBuffers * kImageSize + nOffset], &arrPacket[8],
                            static_cast<std::size_t>(nSize) - 8);
                m_nBytes += static_cast<std::uint64_t>(nSize) - 8;
            } else if (arrPacket[4] == 2) {
                {
                    const std::lock_guard objLock(m_mtxDone);
                    m_nDone = nBlock;
                }
                m_objDone.notify_one();
            }
        }
    }

    const std::size_t m_nPayload;
    int m_nSocket;
    std::uint16_t m_nPort;
    std::vector<unsigned char> m_vecImage;
    std::atomic<bool> m_bStop = false;
    std::atomic<std::uint64_t> m_nBytes = 0;
    std::mutex m_mtxDone;
    std::condition_variable m_objDone;
    unsigned m_nDone = 0;
    CThread m_objThread;
};

/// The producer's receiver with a consumer that gives every buffer back at once.
class CProducerLoop : private IBlockSink {
public:
    explicit CProducerLoop(std::size_t nPacketSize)
        : m_vecImage(kBuffers * kImageSize),
          m_objSocket(Cable().m_objAdapter, kNear, kFar, kReceiveBuffer),
          m_objReceiver(m_objSocket, *this, {.PacketSize = nPacketSize, .Resend = false}) {}
    ~CProducerLoop() override { m_objReceiver.Stop(true); }
    std::uint16_t GetPort() const { return m_objSocket.GetLocalPort(); }
    std::uint64_t GetBytes() const { return m_objReceiver.GetStatistics().Packets * m_nBytesAPacket; }
    std::uint64_t m_nBytesAPacket = 0;

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
};

template <class TLoop>
RUN Measure(SENDER_SETTINGS objSettings) {
    TLoop objLoop(objSettings.PacketSize);
    if constexpr (requires { objLoop.m_nBytesAPacket; }) {
        objLoop.m_nBytesAPacket = gev::GetPayloadPerPacket(objSettings.PacketSize, false);
    }
    objSettings.Port = objLoop.GetPort();
    const auto objStart = std::chrono::steady_clock::now();
    const std::int64_t nCpu = ProcessTime();
    const std::int64_t nSender = SendImages(Cable().m_objFar, objSettings, nullptr);
    // What the socket still holds belongs to the run.
    std::uint64_t nBytes = 0;
    auto objEnd = std::chrono::steady_clock::now();
    for (auto objNow = objEnd; objNow - objEnd < std::chrono::milliseconds(20);
         objNow = std::chrono::steady_clock::now()) {
        if (const std::uint64_t nNow = objLoop.GetBytes(); nNow != nBytes) {
            nBytes = nNow;
            objEnd = objNow;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    const std::chrono::duration<double> objElapsed = objEnd - objStart;
    return {static_cast<double>(nBytes) / objElapsed.count(),
            static_cast<double>(ProcessTime() - nCpu - nSender) / static_cast<double>(nBytes)};
}

double Median(std::vector<double> vecValue) {
    std::ranges::sort(vecValue);
    return vecValue[vecValue.size() / 2];
}

/// Arguments: packet size; whether the sender's packets may stay joined on their way; Mb/s of a limit, 0 for none.
void StreamThroughput(benchmark::State& objState) {
    Cable();  // before the first socket, which belongs to the machine that its thread is on
    SENDER_SETTINGS objSettings;
    objSettings.Address = kNear;
    objSettings.PacketSize = static_cast<std::size_t>(objState.range(0));
    objSettings.Joined = objState.range(1) != 0;
    std::vector<double> vecBareRate;
    std::vector<double> vecRateRatio;
    std::vector<double> vecCpuRatio;
    for (auto _ : objState) {
        const RUN objBare = Measure<CBareLoop>(objSettings);
        const RUN objProducer = Measure<CProducerLoop>(objSettings);
        vecBareRate.push_back(objBare.Rate);
        vecRateRatio.push_back(objProducer.Rate / objBare.Rate);
        vecCpuRatio.push_back(objProducer.CpuTime / objBare.CpuTime);
    }
    objState.counters["bare_MBps"] = Median(vecBareRate) / 1e6;
    objState.counters["rate_ratio"] = Median(vecRateRatio);  // goal: at least 0.95
    objState.counters["cpu_ratio"] = Median(vecCpuRatio);    // goal: at most 1.15
}
BENCHMARK(StreamThroughput)
    ->ArgNames({"packet", "joined"})
    ->ArgsProduct({{1500, 9000}, {0, 1}})
    ->Iterations(7)
    ->Unit(benchmark::kMillisecond);

std::int64_t Now() {
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

/// Microseconds from the sending of each trailer to a second thread that has its image.
std::vector<double> MeasureBareLatency(SENDER_SETTINGS objSettings) {
    std::vector<double> vecLatency;
    TrailerTimes vecTimes(objSettings.Frames + 1);
    CBareLoop objLoop(objSettings.PacketSize);
    objSettings.Port = objLoop.GetPort();
    std::thread objSender([&] { SendImages(Cable().m_objFar, objSettings, &vecTimes); });
    while (vecLatency.size() < objSettings.Frames) {
        const std::atomic<std::int64_t>* const pTime = objLoop.WaitForBlock(vecTimes);
        vecLatency.push_back(static_cast<double>(Now() - *pTime) / 1000);
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
        vecLatency.push_back(static_cast<double>(Now() - vecTimes[i]) / 1000);
        objPool.Queue(objData.BufferHandle);
    }
    objSender.join();
    objReceiver.Stop(false);
    return vecLatency;
}

/// Argument: packet size.
void StreamLatency(benchmark::State& objState) {
    Cable();  // before the first socket, which belongs to the machine that its thread is on
    SENDER_SETTINGS objSettings;
    objSettings.Address = kNear;
    objSettings.PacketSize = static_cast<std::size_t>(objState.range(0));
    objSettings.Pause = std::chrono::milliseconds(3);
    std::vector<double> vecBare;
    std::vector<double> vecProducer;
    for (auto _ : objState) {
        std::ranges::copy(MeasureBareLatency(objSettings), std::back_inserter(vecBare));
        std::ranges::copy(MeasureProducerLatency(objSettings), std::back_inserter(vecProducer));
    }
    std::ranges::sort(vecBare);
    std::ranges::sort(vecProducer);
    const std::size_t nMiddle = vecBare.size() / 2;
    const std::size_t nHigh = vecBare.size() * 99 / 100;
    objState.counters["bare_us"] = vecBare[nMiddle];
    objState.counters["median_ratio"] = vecProducer[nMiddle] / vecBare[nMiddle];  // goal: at most 1.2
    objState.counters["p99_ratio"] = vecProducer[nHigh] / vecBare[nHigh];         // goal: at most 1.5
}
BENCHMARK(StreamLatency)->ArgName("packet")->Arg(1500)->Arg(9000)->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
