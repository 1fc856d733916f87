#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include "camera/PacketOutlet.h"
#include "camera/StreamSettings.h"

namespace camera {

/// The last stage of a stream: loses, doubles, shuffles and spoils its packets as the faults say. Without faults it
/// hands over what it gets, as it is.
///
/// The same faults do the same to the same packets. Allocates when faults are set, and not for packets. Not for two
/// threads at once.
class CFaultyOutlet {
public:
    /// @param objOutlet  must outlive this
    explicit CFaultyOutlet(IPacketOutlet& objOutlet) : m_objOutlet(objOutlet) {}

    /// Begins anew with them. What is held back is sent first: nothing of it was to be lost.
    void SetFaults(const STREAM_FAULTS& objFaults);
    [[nodiscard]] const STREAM_FAULTS& GetFaults() const { return m_objFaults; }

    /// @param nPacketCount  of the packets' block
    void Send(std::span<const STREAM_PACKET> arrPacket, std::uint32_t nPacketCount);
    /// Lets go what is held back to be shuffled.
    void Flush();
    /// Forgets it: the channel that it was for is closed.
    void Drop() { m_nHeld = 0; }

private:
    static constexpr std::size_t kLongestPacket = 16'384;
    static constexpr std::uint32_t kMostHeld = 64;

    bool Happens(double nPercent);
    std::uint32_t Random(std::uint32_t nMost);
    [[nodiscard]] bool IsLost(const STREAM_PACKET& objPacket, std::uint32_t nPacketCount);
    void SendOne(const STREAM_PACKET& objPacket);
    void SendWrongSize(const STREAM_PACKET& objPacket);
    void SendForeign(const STREAM_PACKET& objPacket);
    void HoldBack(const STREAM_PACKET& objPacket);

    IPacketOutlet& m_objOutlet;
    STREAM_FAULTS m_objFaults;
    bool m_bAny = false;
    std::minstd_rand m_objRandom;
    std::uint32_t m_nStillLost = 0;  // of the burst
    std::uint32_t m_nFrames = 0;     // whose leaders came by
    bool m_bStopped = false;
    std::size_t m_nHeld = 0;
    std::vector<std::size_t> m_vecHeldSize;
    std::vector<std::byte> m_vecHeld;  // kLongestPacket for each
    std::array<std::byte, kLongestPacket> m_arrJunk{};
};

}  // namespace camera
