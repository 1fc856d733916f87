#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "camera/RouteSocket.h"

namespace camera {

/// Where a datagram came from and what it was sent to. Addresses and port in host order.
struct RECEIVED_DATAGRAM {
    std::uint32_t Source;
    std::uint16_t SourcePort;
    std::uint32_t Destination;
    std::span<const std::byte> Payload;  ///< in the buffer that was handed in
};

/// Hears and answers GVCP on one adapter, whatever address the adapter has or hasn't.
///
/// Receives the frames themselves: the kernel would drop datagrams of other subnets for the lack of a route back. A
/// common socket on the same port sends, and keeps the kernel from refusing the port to those who ask. Not for two
/// threads at once. Belongs to the network namespace of the thread that made it.
class CGvcpSocket {
public:
    /// @param nPort  UDP port to listen on and to send from
    /// @throws std::system_error  not permitted, or another program has the port
    CGvcpSocket(int nAdapterIndex, std::uint16_t nPort);
    ~CGvcpSocket();
    CGvcpSocket(const CGvcpSocket&) = delete;
    CGvcpSocket& operator=(const CGvcpSocket&) = delete;

    /// The descriptor to wait on: readable when a datagram may be there.
    [[nodiscard]] int GetDescriptor() const { return m_nReceive; }

    /// The next datagram to the port that was sent to this adapter, as unicast or broadcast; nothing when none waits.
    /// Frames that aren't whole IPv4 UDP datagrams are passed over.
    std::optional<RECEIVED_DATAGRAM> Receive(std::span<std::byte> arrBuffer);

    /// Sends a broadcast as it is, and all else by the system's routes, as a camera does that knows its subnet alone.
    /// @return 0, or the errno: without a route to the destination nothing is sent
    int Send(std::uint32_t nAddress, std::uint16_t nPort, std::span<const std::byte> arrPayload);

private:
    void Close() const;

    int m_nReceive = -1;
    int m_nSend = -1;
    CRouteSocket m_objRoute;
};

}  // namespace camera
