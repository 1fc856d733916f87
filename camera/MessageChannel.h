#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "camera/Answering.h"
#include "camera/Device.h"
#include "camera/ImageStream.h"
#include "gev/GvcpHeader.h"

namespace camera {

/// Tells the host of the message channel what happens to frames: one event at a time, each until it is acknowledged or
/// its repeats are used up. The frame trigger is told by EVENT, the end of exposure by EVENTDATA, with the time and the
/// frame's number behind the entry, 8 bytes each.
///
/// Allocates nothing. Not for two threads at once.
class CMessageChannel {
public:
    /// @param objDevice, objOutlet  must outlive this
    CMessageChannel(const CDevice& objDevice, IOutlet& objOutlet) : m_objDevice(objDevice), m_objOutlet(objOutlet) {}

    /// Tells an event behind those that wait. It is lost when the channel is closed or too many wait.
    void Tell(const FRAME_EVENT& objEvent, TIME tNow);

    /// @return whether the datagram was an event's acknowledge, the awaited one or another
    bool TakeAcknowledge(const ENDPOINT& objFrom, std::span<const std::byte> arrDatagram, TIME tNow);

    /// Sends what is due. Forgets all events when the channel has been closed.
    void Advance(TIME tNow);
    [[nodiscard]] std::optional<TIME> NextTime() const;

private:
    static constexpr std::size_t kMostWaiting = 64;

    struct IN_FLIGHT {
        gev::GvcpBuffer Datagram;
        std::size_t Length = 0;
        std::uint32_t RepeatsLeft = 0;
        TIME Due{};
    };

    void SendNext(TIME tNow);
    std::span<std::byte> Encode(const FRAME_EVENT& objEvent, bool bAcknowledge);

    const CDevice& m_objDevice;
    IOutlet& m_objOutlet;
    std::array<FRAME_EVENT, kMostWaiting> m_arrWaiting{};  // a ring
    std::size_t m_nFirst = 0;
    std::size_t m_nWaiting = 0;
    bool m_bInFlight = false;
    IN_FLIGHT m_objInFlight;
    std::uint16_t m_nRequestID = 0;  // of the last event
};

}  // namespace camera
