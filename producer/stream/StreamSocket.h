#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "producer/wire/Adapter.h"
#include "producer/wire/SocketDescriptor.h"

namespace producer {

/// What came at one time: packets of equal length, but the last, one behind the other.
struct RECEIVED_PACKETS {
    std::span<const std::byte> Bytes;
    std::size_t PacketLength = 0;  ///< never 0
};

/// The socket that a camera's stream goes to. It hears this camera alone: what others send is dropped by the kernel
/// before it takes room in the receive buffer.
///
/// Takes many packets with one call of the kernel (recvmmsg), which joins packets of equal length where it can (UDP
/// GRO); both are found out at the start. Receive belongs to one thread; the rest is for any. Addresses have their
/// first octet highest.
class CStreamSocket {
public:
    /// Packets longer than that don't exist.
    static constexpr std::size_t kLongestPacket = 65'535;

    /// Takes any free port of the adapter's address.
    /// @param nLocalAddress  of the adapter, the one that the camera is told
    /// @param nBuffer        bytes of receive buffer asked for; the kernel grants what it may
    /// @throws CProducerError  as ThrowSocketError
    CStreamSocket(const ADAPTER& objAdapter, std::uint32_t nLocalAddress, std::uint32_t nCamera, std::size_t nBuffer);
    ~CStreamSocket();
    CStreamSocket(const CStreamSocket&) = delete;
    CStreamSocket& operator=(const CStreamSocket&) = delete;

    /// From now on it hears one port of the camera alone, or with 0 every port again.
    /// @throws CProducerError  as ThrowSocketError
    void HearPort(std::uint16_t nPort);
    /// From now on it hears every port of the camera, until a packet comes from this one; then that one alone.
    /// @throws CProducerError  as ThrowSocketError
    void AwaitPort(std::uint16_t nPort);

    /// Waits for packets, and takes with them what else is there.
    /// @return good until the next call; empty when the wait was in vain or ended by Shutdown
    std::span<const RECEIVED_PACKETS> Receive(std::chrono::milliseconds objWait);

    /// Whether the last call took all packets that were there: it found fewer than it asked for.
    [[nodiscard]] bool IsDrained() const noexcept { return m_nTaken < m_nAsked; }
    /// Leaves packets to gather for a while; the next call takes them together.
    void Gather(std::chrono::nanoseconds objPause);

    /// Ends the wait of Receive, now and from now on.
    void Shutdown() noexcept;

    [[nodiscard]] std::uint16_t GetLocalPort() const noexcept { return m_nLocalPort; }
    /// Bytes of receive buffer that the kernel granted.
    [[nodiscard]] std::size_t GetGrantedBuffer() const noexcept { return m_nGrantedBuffer; }
    /// Whether the kernel joins packets.
    [[nodiscard]] bool IsJoining() const noexcept { return m_bJoining; }
    /// Packets that the kernel dropped: the buffer was full, or another host sent them.
    [[nodiscard]] std::uint64_t GetDropped() const noexcept;

private:
    static constexpr std::size_t kMessages = 32;  // of one call: more don't pay, and fall out of the processor's cache

    struct BATCH;

    void SetUp(const ADAPTER& objAdapter, std::size_t nBuffer);
    void SetWait(std::chrono::milliseconds objWait);
    bool Filter(std::uint16_t nPort) noexcept;
    void NoteSources() noexcept;
    bool IsFromAwaited(std::size_t nMessage) const noexcept;
    bool FindAwaited(std::size_t nReceived) noexcept;

    CSocketDescriptor m_objDescriptor;
    const std::uint32_t m_nCamera;
    std::uint16_t m_nLocalPort = 0;
    std::size_t m_nGrantedBuffer = 0;
    bool m_bJoining = false;
    std::chrono::milliseconds m_objWait{-1};  // as last told to the kernel
    unsigned m_nAsked = 0;                    // messages that the last call asked for
    std::size_t m_nTaken = 0;                 // messages that came
    std::uint16_t m_nAwaitedPort = 0;         // of the camera; 0 when none is awaited
    unsigned m_nSingly = 0;                   // calls to come that ask for one message alone
    std::unique_ptr<BATCH> m_pBatch;
    std::vector<RECEIVED_PACKETS> m_vecReceived;
};

}  // namespace producer
