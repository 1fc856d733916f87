#pragma once

#include <atomic>
#include <cstdint>

#include "producer/stream/EventMessages.h"
#include "producer/wire/ControlChannel.h"
#include "producer/wire/UdpSocket.h"
#include "producer/wire/WakeSocket.h"
#include "support/Thread.h"

namespace producer {

/// The channel on which a camera sends its events: a socket of its own and a thread that acknowledges them and hands
/// each on once, however often the camera repeats it.
///
/// Owned by an open device.
class CMessageChannel {
public:
    /// Opens the camera's message channel towards this machine. Takes at most some four seconds.
    /// @param objChannel  with control; must outlive this object
    /// @param funEvent    called on the channel's thread, without a lock held
    /// @throws CProducerError  as CControlChannel and CUdpSocket; GC_ERR_RESOURCE_EXHAUSTED without a thread
    CMessageChannel(CControlChannel& objChannel, CEventMessages::EventCallback funEvent);
    /// Closes the camera's message channel, if it answers within a second, and ends the thread.
    ~CMessageChannel();
    CMessageChannel(const CMessageChannel&) = delete;
    CMessageChannel& operator=(const CMessageChannel&) = delete;

private:
    static std::uint32_t RunThread(void* pArg) noexcept;
    void Run();
    void Close() noexcept;

    CControlChannel& m_objChannel;
    CEventMessages m_objMessages;  // of the thread
    CUdpSocket m_objSocket;
    CWakeSocket m_objWake;
    std::atomic<bool> m_bStop = false;
    CThread m_objThread;  // last: it uses all of the above
};

}  // namespace producer
