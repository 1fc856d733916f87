#pragma once

#include <cstdint>
#include <optional>

#include "producer/stream/StreamSocket.h"
#include "producer/wire/ControlChannel.h"

namespace producer {

/// The least packet size that every way carries. Source: GigE Vision, stream channel packet size.
inline constexpr std::uint32_t kLeastPacketSize = 576;

/// Finds the largest packets that come from the camera in one piece: lets it send test packets that may not be
/// fragmented, the longest that the adapter takes first. Takes a few round trips where that one comes, and at most
/// about two seconds else.
/// @param objChannel  with control; the camera's stream channel already has the socket as its destination
/// @param objSocket   that nobody else receives from, before the stream runs
/// @param objDeadline  for all questions, of which the last is to write what was found; the search ends some time
/// before
/// @return in bytes with the headers of IP, UDP and GVSP; nothing when no test packet comes at all, as from a camera
///         that knows none. The camera's register holds the size then, without the order to fire, or what it held,
///         which may be sent in pieces.
/// @throws CProducerError  as CControlChannel; the register holds what it held, if the camera still answers
std::optional<std::uint32_t> FindPacketSize(CControlChannel& objChannel, CStreamSocket& objSocket,
                                            Clock::time_point objDeadline);

/// Lets the camera send one test packet of the size that it is set to, which is left as it is.
/// @return whether it came, as with FindPacketSize
bool HearTestPacket(CControlChannel& objChannel, CStreamSocket& objSocket, Clock::time_point objDeadline);

}  // namespace producer
