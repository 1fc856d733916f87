#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>

#include "producer/wire/ControlChannel.h"

// What is done to a camera's addresses without opening it. Each call runs on its caller's thread, keeps nothing, and
// returns when what it asked for has become true: the adapter is asked again and again who is there until the camera
// says so, or the time below is over. Adapters go by name and are looked up anew. Failures are CProducerError with a
// text that says what was sent where and what didn't come back: GC_ERR_NOT_AVAILABLE when the adapter is gone,
// GC_ERR_TIMEOUT, GC_ERR_INVALID_PARAMETER for addresses that make no sense, and what the camera answers.

namespace producer {

/// How long a camera may take to be heard with the address that it was given.
inline constexpr std::chrono::milliseconds kForceIpDeadline{6'000};

/// How long a camera may take to be heard again after its IP configuration was started anew: DHCP and link-local
/// take their time.
inline constexpr std::chrono::milliseconds kRestartIpDeadline{20'000};

/// An IPv4 configuration, first octets highest. The gateway may be 0.
struct IP_SETTINGS {
    std::uint32_t Address = 0;
    std::uint32_t Mask = 0;
    std::uint32_t Gateway = 0;
};

/// What the camera is to keep. What isn't set stays as it is.
struct IP_CONFIGURATION {
    std::uint32_t Configuration = 0;  ///< persistent 1, DHCP 2, link-local 4, added up; 0 leaves them as they are
    std::optional<std::uint32_t> Address;
    std::optional<std::uint32_t> Mask;
    std::optional<std::uint32_t> Gateway;
    std::optional<std::string> UserName;  ///< at most 16 bytes of UTF-8
};

/// Gives a camera an address until its next start (FORCEIP_CMD by broadcast, with the acknowledge by broadcast too).
/// Works on cameras of any subnet that no application controls.
/// @param objGiveUp  ends the wait within some 250 ms, with GC_ERR_ABORT
void DoForceIp(const std::string& strAdapter, std::uint64_t nMac, const IP_SETTINGS& objSettings,
               const std::stop_token& objGiveUp = {});

/// Lets a camera start its IP configuration again (FORCEIP_CMD with address 0.0.0.0), and waits until it is heard after
/// it.
/// @param objGiveUp  as for DoForceIp
void DoRestartIpConfiguration(const std::string& strAdapter, std::uint64_t nMac, const std::stop_token& objGiveUp = {});

/// Writes the configuration that a camera starts with, over a control channel of its own, and reads it back. In force
/// from the camera's next start. The camera must be in a subnet of the adapter and under nobody's control.
void DoConfigureIp(const std::string& strAdapter, std::uint64_t nMac, const IP_CONFIGURATION& objConfiguration);
/// The same over a channel that is open already with Control or Exclusive.
void DoConfigureIp(CControlChannel& objChannel, const IP_CONFIGURATION& objConfiguration);

/// The whole DISCOVERY_ACK of one camera: the 8 bytes of the acknowledge header, then 248 bytes. The two bytes at
/// offset 16, reserved on the wire, carry the camera's DEVICE_ACCESS_STATUS, the low byte first.
using DISCOVERY_REPLY = std::array<std::byte, 256>;

/// Asks one address, by a unicast that leaves by the adapter, for its discovery acknowledge.
/// @return as the camera sent it, not cleaned
DISCOVERY_REPLY DoAskDevice(const std::string& strAdapter, std::uint32_t nAddress);

}  // namespace producer
