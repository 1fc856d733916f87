#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "camera/PacketOutlet.h"
#include "camera/RouteSocket.h"
#include "camera/StreamSettings.h"

namespace camera {

/// The source of a stream: a UDP socket on one adapter, with as few calls of the kernel as it allows.
///
/// Packets of one length that follow each other leave in one piece, which the kernel cuts up as late as it can, where
/// it knows how to and they fit into the adapter's frames. Not for two threads at once. Belongs to the network
/// namespace of the thread that made it.
class CStreamSocket : public IPacketOutlet {
public:
    static constexpr std::size_t kMostPackets = 64;  ///< that are handed to the kernel at once

    /// @throws std::system_error
    explicit CStreamSocket(int nAdapterIndex);
    ~CStreamSocket() override;
    CStreamSocket(const CStreamSocket&) = delete;
    CStreamSocket& operator=(const CStreamSocket&) = delete;

    [[nodiscard]] std::uint16_t GetPort() const override { return m_nPort; }
    void SetDestination(const CHANNEL& objChannel, bool bDoNotFragment) override;

    /// Holds up to 0.1 s when the adapter doesn't take more.
    void Send(std::span<const STREAM_PACKET> arrPacket) override;
    [[nodiscard]] UNSENT_PACKETS TakeUnsent() override { return std::exchange(m_objUnsent, {}); }
    void SendForeign(const STREAM_PACKET& objPacket) override;

private:
    bool HasRoute();
    void Lose(std::size_t nPackets, int nErrno);
    std::size_t SendSome(std::span<const STREAM_PACKET> arrPacket);

    int m_nSocket = -1;
    int m_nForeign = -1;
    std::uint16_t m_nPort = 0;
    CRouteSocket m_objRoute;
    CHANNEL m_objChannel;
    int m_nNoRoute = 0;  // the errno that told so
    UNSENT_PACKETS m_objUnsent;
    std::size_t m_nTooLong = SIZE_MAX;  // packets of this size and more can't leave in one piece
};

/// Lets the waits of the calling thread end as exactly as the kernel can, which groups them otherwise.
void SharpenTimers();

}  // namespace camera
