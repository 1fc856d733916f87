#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "producer/wire/Adapter.h"
#include "producer/wire/UdpSocket.h"

namespace producer {

/// Hears the UDP datagrams from port 3956 to one port of ours as the adapter takes them in: before the reverse-path
/// filter and the firewall, which drop answers of cameras in other subnets. For one thread at a time.
class CPacketSocket {
public:
    /// A socket that may not be opened is none, and hears nothing.
    CPacketSocket(const ADAPTER& objAdapter, std::uint16_t nOurPort);
    /// Returns at once; the kernel's part of the close may take a few milliseconds more, on a thread of its own.
    ~CPacketSocket();
    CPacketSocket(const CPacketSocket&) = delete;
    CPacketSocket& operator=(const CPacketSocket&) = delete;

    /// @return 0; EPERM where the process lacks the right; another errno.
    [[nodiscard]] int GetError() const noexcept { return m_nError; }

    /// @return what has come already, without waiting; packets that are no whole UDP datagrams are dropped. Nothing
    ///         also after 64 that were dropped: the socket stays readable then.
    std::optional<RECEIVED_DATAGRAM> Receive(std::span<std::byte> objBuffer) const noexcept;

    /// @return -1 for none.
    [[nodiscard]] int GetDescriptor() const noexcept { return m_objDescriptor.Get(); }

private:
    CSocketDescriptor m_objDescriptor;
    int m_nError = 0;
};

}  // namespace producer
