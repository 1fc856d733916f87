#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>

#include "producer/stream/Pace.h"
#include "producer/stream/Reassembly.h"
#include "producer/stream/StreamSocket.h"
#include "support/Thread.h"

namespace producer {

/// The thread that takes one camera's packets and makes blocks of them.
///
/// Owned by an acquisition. Runs from its construction to Stop; the sink is called on its thread alone.
class CStreamReceiver {
public:
    /// @param objSocket  ready to receive; this thread alone receives from it, until Stop has returned
    /// @param objSink    must outlive this object
    /// @throws CProducerError  GC_ERR_RESOURCE_EXHAUSTED, when there is no thread to be had
    CStreamReceiver(CStreamSocket& objSocket, IBlockSink& objSink, const REASSEMBLY_SETTINGS& objSettings);
    /// As Stop(false).
    ~CStreamReceiver();
    CStreamReceiver(const CStreamReceiver&) = delete;
    CStreamReceiver& operator=(const CStreamReceiver&) = delete;

    /// Ends the thread. Blocks under way are delivered as they are, or their memory is handed back.
    void Stop(bool bDeliver) noexcept;

    void SetResend(bool bResend) noexcept { m_bResend = bResend; }
    /// As of the last packets that came at once. Any thread may ask.
    [[nodiscard]] STREAM_STATISTICS GetStatistics() const;

private:
    static std::uint32_t RunThread(void* pArg) noexcept;
    void Run();
    StreamClock::time_point GetTime(StreamClock::time_point objDue);
    std::size_t Take(std::span<const RECEIVED_PACKETS> arrReceived, StreamClock::time_point objNow);
    [[nodiscard]] std::chrono::milliseconds GetWait(StreamClock::time_point objNow) const;

    CStreamSocket& m_objSocket;
    CReassembly m_objReassembly;
    CPace m_objPace;
    StreamClock::duration m_objHeldUp{0};  // time that doesn't count, see GetTime; of the thread
    std::atomic<bool> m_bStop = false;
    std::atomic<bool> m_bResend;
    mutable std::mutex m_mtxStatistics;  // guards the one below
    STREAM_STATISTICS m_objStatistics;
    CThread m_objThread;  // last: it uses all of the above
};

}  // namespace producer
