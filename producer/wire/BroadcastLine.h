#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "gev/GvcpHeader.h"
#include "producer/wire/Adapter.h"
#include "producer/wire/PacketSocket.h"
#include "producer/wire/UdpSocket.h"
#include "producer/wire/WakeSocket.h"

namespace producer {

/// An acknowledge, and who sent it.
struct HEARD_ACKNOWLEDGE {
    gev::GVCP_ACKNOWLEDGE_HEADER Header;
    std::span<const std::byte> Payload;  ///< good until the listener returns
    std::uint32_t Source = 0;
};

/// Talks to all cameras behind an adapter at once, by broadcast, and hears every answer that its wire brings: also
/// those that the reverse-path filter or a firewall drops, where the process may open a packet socket; such answers
/// come twice where nothing drops them. For one thread.
class CBroadcastLine {
public:
    /// @throws CProducerError  as CUdpSocket
    explicit CBroadcastLine(const ADAPTER& objAdapter);

    /// To 255.255.255.255, or, directed, to each subnet of the adapter.
    /// @return 0 when one of the broadcasts left; else the errno of the last.
    int SendToAll(std::span<const std::byte> objDatagram, bool bDirected);
    /// To port 3956 of one camera. @return 0, or the errno.
    int SendTo(std::uint32_t nAddress, std::span<const std::byte> objDatagram);

    /// Hands acknowledges to the listener until the deadline, or until pWake is signalled or the listener answers
    /// false.
    /// @param pWake  may be null
    /// @return true when the deadline ended it.
    bool Listen(Clock::time_point objDeadline, const CWakeSocket* pWake,
                const std::function<bool(const HEARD_ACKNOWLEDGE&)>& funHeard);

    /// @return why the packet socket isn't there, as an errno; 0 when it is.
    [[nodiscard]] int GetPacketSocketError() const noexcept { return m_objPacketSocket.GetError(); }
    /// @return datagrams that were no acknowledge of a camera.
    [[nodiscard]] std::uint64_t GetRefused() const noexcept { return m_nRefused; }

private:
    template <class Socket>
    bool Drain(const Socket& objSocket, const std::function<bool(const HEARD_ACKNOWLEDGE&)>& funHeard);

    const ADAPTER m_objAdapter;
    CUdpSocket m_objUdpSocket;
    CPacketSocket m_objPacketSocket;
    std::uint64_t m_nRefused = 0;
};

/// Questions asked and acknowledged by broadcast.
inline constexpr std::uint8_t kBroadcastFlags = gev::kGvcpFlagAcknowledge | gev::kGvcpFlagBroadcastAcknowledge;

}  // namespace producer
