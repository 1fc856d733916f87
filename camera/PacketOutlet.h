#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <system_error>

#include "camera/StreamSettings.h"

namespace camera {

/// A packet of the stream in two parts, which needn't lie together.
struct STREAM_PACKET {
    std::span<const std::byte> Header;
    std::span<const std::byte> Body;

    [[nodiscard]] std::size_t GetSize() const { return Header.size() + Body.size(); }
};

/// Packets that the system didn't take.
struct UNSENT_PACKETS {
    std::uint64_t Count = 0;
    std::error_code Reason;  ///< of the first of them
};

/// What carries a stream's packets away.
class IPacketOutlet {
public:
    virtual ~IPacketOutlet() = default;
    /// The UDP port that packets come from.
    [[nodiscard]] virtual std::uint16_t GetPort() const = 0;
    /// Where the next packets go, and whether they may be cut on the way; nowhere while the channel is closed.
    virtual void SetDestination(const CHANNEL& objChannel, bool bDoNotFragment) = 0;
    /// The packets are good during the call. What can't be sent is lost, and counted.
    virtual void Send(std::span<const STREAM_PACKET> arrPacket) = 0;
    /// Those since the last call that Send couldn't send.
    [[nodiscard]] virtual UNSENT_PACKETS TakeUnsent() = 0;
    /// Sends one packet as if another program had: from another port.
    virtual void SendForeign(const STREAM_PACKET& objPacket) = 0;
};

}  // namespace camera
