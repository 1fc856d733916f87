#include "producer/stream/StreamReceiver.h"

#include <algorithm>
#include <bit>

#include "producer/ProducerError.h"

namespace producer {

namespace {

constexpr std::chrono::milliseconds kIdleWait{128};
constexpr std::chrono::milliseconds kLongestBacklog{100};  // to work off what a full receive buffer holds
constexpr std::chrono::milliseconds kHeldUp{20};           // longer than a wait may end late by itself

/// Bytes of receive buffer that a packet may take: the kernel counts its own records, and memory that it didn't fill.
std::size_t GetRoomOf(std::size_t nPacketSize) {
    return 2 * nPacketSize + 512;
}

}  // namespace

CStreamReceiver::CStreamReceiver(CStreamSocket& objSocket, IBlockSink& objSink, const REASSEMBLY_SETTINGS& objSettings)
    : m_objSocket(objSocket),
      m_objReassembly(objSink, objSettings),
      m_objPace(objSocket.GetGrantedBuffer() / GetRoomOf(objSettings.PacketSize)),
      m_bResend(objSettings.Resend) {
    if (!m_objThread.Start(this, &CStreamReceiver::RunThread, kPriorityTimeCritical)) {
        throw CProducerError(GC_ERR_RESOURCE_EXHAUSTED, "the system has no thread left to receive images on");
    }
}

CStreamReceiver::~CStreamReceiver() {
    Stop(false);
}

void CStreamReceiver::Stop(bool bDeliver) noexcept {
    if (m_bStop.exchange(true)) {
        return;
    }
    m_objSocket.Shutdown();
    m_objThread.Join();
    m_objReassembly.Finish(bDeliver);
    const std::lock_guard objLock(m_mtxStatistics);
    m_objStatistics = m_objReassembly.GetStatistics();
}

STREAM_STATISTICS CStreamReceiver::GetStatistics() const {
    const std::lock_guard objLock(m_mtxStatistics);
    return m_objStatistics;
}

std::uint32_t CStreamReceiver::RunThread(void* pArg) noexcept {
    static_cast<CStreamReceiver*>(pArg)->Run();
    return 0;
}

void CStreamReceiver::Run() {
    StreamClock::time_point objNow = StreamClock::now();
    StreamClock::time_point objSeen = objNow;     // what came until then has been taken
    StreamClock::time_point objBacklog = objNow;  // since when more was there than could be taken at once
    bool bDrained = true;
    while (!m_bStop) {
        const std::chrono::milliseconds objWait = GetWait(objNow);
        const std::span<const RECEIVED_PACKETS> arrReceived = m_objSocket.Receive(objWait);
        objNow = GetTime(objNow + objWait);
        objBacklog = bDrained ? objNow : objBacklog;
        bDrained = m_objSocket.IsDrained();
        if (bDrained || objNow - objBacklog >= kLongestBacklog) {
            objSeen = objBacklog = objNow;
        }
        m_objReassembly.SetResend(m_bResend);
        const std::size_t nPackets = Take(arrReceived, objNow);
        m_objReassembly.Service(objNow, objSeen);
        {
            const std::lock_guard objLock(m_mtxStatistics);
            m_objStatistics = m_objReassembly.GetStatistics();
        }
        const std::chrono::nanoseconds objPause =
            m_objPace.Take(nPackets, bDrained, m_objReassembly.GetExpected(), objNow);
        if (objPause.count() != 0) {
            m_objSocket.Gather(objPause);
        }
    }
}

/// The time, without that in which this thread wasn't let run: a camera isn't late because we are, and most often it
/// was held up as well.
/// @param objDue  when it should have been let run at the latest
StreamClock::time_point CStreamReceiver::GetTime(StreamClock::time_point objDue) {
    const StreamClock::time_point objNow = StreamClock::now() - m_objHeldUp;
    if (objNow - objDue < kHeldUp) {
        return objNow;
    }
    m_objHeldUp += objNow - objDue;
    return objDue;
}

/// @return how many packets they were
std::size_t CStreamReceiver::Take(std::span<const RECEIVED_PACKETS> arrReceived, StreamClock::time_point objNow) {
    std::size_t nPackets = 0;
    for (const RECEIVED_PACKETS& objReceived : arrReceived) {
        for (std::span<const std::byte> arrRest = objReceived.Bytes; !arrRest.empty();) {
            const std::size_t nLength = std::min(arrRest.size(), objReceived.PacketLength);
            m_objReassembly.TakePacket(arrRest.first(nLength), objNow);
            arrRest = arrRest.subspan(nLength);
            ++nPackets;
        }
    }
    return nPackets;
}

/// Until something is due, roughly: telling the kernel another wait costs a call, so there are only few different ones.
std::chrono::milliseconds CStreamReceiver::GetWait(StreamClock::time_point objNow) const {
    const std::optional<StreamClock::time_point> objDue = m_objReassembly.GetNextDue();
    if (!objDue) {
        return kIdleWait;
    }
    const auto objLeft = std::chrono::duration_cast<std::chrono::milliseconds>(*objDue - objNow);
    const auto nLeft = static_cast<std::uint64_t>(std::clamp<std::int64_t>(objLeft.count(), 1, kIdleWait.count()));
    return std::chrono::milliseconds(std::bit_floor(nLeft));
}

}  // namespace producer
