#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <span>

#include "gev/GvcpEvent.h"
#include "gev/GvcpHeader.h"
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
    /// Called for each event on the channel's thread, without a lock held. The data, which may be none, are good for
    /// the length of the call.
    using EventCallback = std::function<void(const gev::EVENT_ENTRY& objEvent, std::span<const std::byte> spanData)>;

    /// Opens the camera's message channel towards this machine. Takes at most some four seconds.
    /// @param objChannel  with control; must outlive this object
    /// @throws CProducerError  as CControlChannel and CUdpSocket; GC_ERR_RESOURCE_EXHAUSTED without a thread
    CMessageChannel(CControlChannel& objChannel, EventCallback funEvent);
    /// Closes the camera's message channel, if it answers within a second, and ends the thread.
    ~CMessageChannel();
    CMessageChannel(const CMessageChannel&) = delete;
    CMessageChannel& operator=(const CMessageChannel&) = delete;

private:
    static std::uint32_t RunThread(void* pArg) noexcept;
    void Run();
    void Take(const RECEIVED_DATAGRAM& objDatagram);
    void HandOn(const gev::GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> spanPayload);

    CControlChannel& m_objChannel;
    const EventCallback m_funEvent;
    CUdpSocket m_objSocket;
    CWakeSocket m_objWake;
    std::atomic<bool> m_bStop = false;
    std::uint16_t m_nLastRequestID = 0;  // of the thread
    std::uint16_t m_nLastPort = 0;       // that it came from
    CThread m_objThread;                 // last: it uses all of the above
};

}  // namespace producer
