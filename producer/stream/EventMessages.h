#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>

#include "gev/GvcpEvent.h"
#include "gev/GvcpHeader.h"
#include "producer/wire/SocketDescriptor.h"

namespace producer {

/// What a camera says on its message channel, taken apart: each command is acknowledged as often as it comes, and its
/// events are handed on once, in their order.
///
/// A repeat, since the acknowledge was lost, is the same datagram from the same port within a short while. The request
/// ID alone doesn't tell: a camera may have several commands under way, and one that starts anew begins its IDs again.
///
/// Allocates nothing. Not for two threads at once.
class CEventMessages {
public:
    static constexpr std::size_t kRemembered = 32;            ///< commands that a repeat is looked for among
    static constexpr std::chrono::seconds kLongestPause{10};  ///< between a command and its repeat

    /// Called for each event. The data, which may be none, are good for the length of the call.
    using EventCallback = std::function<void(const gev::EVENT_ENTRY& objEvent, std::span<const std::byte> spanData)>;

    explicit CEventMessages(EventCallback funEvent) : m_funEvent(std::move(funEvent)) {}

    /// @param spanAnswer  room for the acknowledge
    /// @return the acknowledge to be sent; empty where none is wanted, and for what is no command of a message channel
    std::span<std::byte> Take(std::span<const std::byte> spanDatagram, std::uint16_t nPort, Clock::time_point tNow,
                              gev::GvcpBuffer& spanAnswer);

private:
    struct COMMAND {
        std::uint16_t Port = 0;
        std::size_t Length = 0;  // 0: none
        Clock::time_point Last;  // when it came, or its repeat
        gev::GvcpBuffer Datagram;
    };

    bool IsRepeat(std::span<const std::byte> spanDatagram, std::uint16_t nPort, Clock::time_point tNow);
    void HandOn(const gev::GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> spanPayload);

    const EventCallback m_funEvent;
    std::array<COMMAND, kRemembered> m_arrCommand{};
    std::size_t m_nOldest = 0;
};

}  // namespace producer
