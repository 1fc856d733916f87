#pragma once

#include <cstdint>
#include <string_view>

namespace gev {

/// The status of an acknowledge, and what every decoder of this folder answers: Success, or the status with which a
/// device refuses such a command. A value that came off the wire may be none of these.
/// Source: GigE Vision, status codes; the deprecated ones are left out.
enum class EGvcpStatus : std::uint16_t {
    Success = 0x0000,
    PacketResend = 0x0100,
    NotImplemented = 0x8001,
    InvalidParameter = 0x8002,
    InvalidAddress = 0x8003,
    WriteProtect = 0x8004,
    BadAlignment = 0x8005,
    AccessDenied = 0x8006,
    Busy = 0x8007,
    PacketUnavailable = 0x800C,
    DataOverrun = 0x800D,
    InvalidHeader = 0x800E,
    PacketNotYetAvailable = 0x8010,
    PacketAndPreviousRemoved = 0x8011,
    PacketRemoved = 0x8012,
    NoReferenceTime = 0x8013,
    PacketTemporarilyUnavailable = 0x8014,
    Overflow = 0x8015,
    ActionLate = 0x8016,
    LeaderTrailerOverflow = 0x8017,
    Error = 0x8FFF,
};

/// What a status means, for messages: "access denied"; "unknown status" for a value without a name.
std::string_view GetText(EGvcpStatus nStatus);

}  // namespace gev
