#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "producer/wire/Adapter.h"
#include "producer/wire/SocketDescriptor.h"

namespace producer {

/// A datagram in the caller's buffer, and who sent it.
struct RECEIVED_DATAGRAM {
    std::span<const std::byte> Payload;
    std::uint32_t Source = 0;
    std::uint16_t SourcePort = 0;
};

/// A UDP socket that is tied to one adapter: it sends by no other and hears no other, whatever the routes say.
///
/// It is bound to the adapter where the process may do that (SO_BINDTODEVICE); elsewhere the adapter is named as the
/// way out, and what came in by another is dropped (IP_PKTINFO). Belongs to the network namespace of the thread that
/// makes it. Sending is for any thread, receiving for one at a time. Addresses have their first octet highest.
class CUdpSocket {
public:
    /// Takes any free port.
    /// @throws CProducerError  as ThrowSocketError
    explicit CUdpSocket(const ADAPTER& objAdapter);

    /// From now on it sends to this address alone and hears no other.
    /// @throws CProducerError  as ThrowSocketError
    void Connect(std::uint32_t nAddress, std::uint16_t nPort);

    /// Never waits. @return 0, or the errno: EAGAIN where the kernel has no room for it.
    int SendTo(std::uint32_t nAddress, std::uint16_t nPort, std::span<const std::byte> objDatagram) const noexcept;
    /// To whom it is connected.
    int Send(std::span<const std::byte> objDatagram) const noexcept;

    /// @return what has come already, without waiting; a datagram longer than the buffer is dropped. Nothing also after
    ///         64 that were dropped: the socket stays readable then.
    std::optional<RECEIVED_DATAGRAM> Receive(std::span<std::byte> objBuffer) const noexcept;

    /// How long ReceiveConnected waits at most.
    void SetWait(std::chrono::milliseconds objWait) const;

    /// One call of the kernel, which waits for a datagram from whom the socket is connected to.
    /// @return what came, in the buffer; empty when the wait was in vain or was broken off by an error of the way.
    std::span<const std::byte> ReceiveConnected(std::span<std::byte> objBuffer) const noexcept;

    [[nodiscard]] std::uint16_t GetLocalPort() const;
    /// @return 0 unless it is connected.
    [[nodiscard]] std::uint32_t GetLocalAddress() const;
    [[nodiscard]] int GetDescriptor() const noexcept { return m_objDescriptor.Get(); }

private:
    CSocketDescriptor m_objDescriptor;
    std::string m_strAdapter;
    int m_nAdapterIndex;
};

}  // namespace producer
