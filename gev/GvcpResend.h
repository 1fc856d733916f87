#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/GvcpHeader.h"

namespace gev {

/// PACKETRESEND_CMD: the device sends these packets of a block once more. Never acknowledged.
struct RESEND_COMMAND {
    std::uint16_t StreamChannel = 0;
    std::uint64_t BlockID = 0;        ///< 1 and up; at most 0xFFFF without extended IDs
    std::uint32_t FirstPacketID = 0;  ///< at most 0xFFFFFF without extended IDs
    std::uint32_t LastPacketID = 0;   ///< not under FirstPacketID
    bool ExtendedIDs = false;         ///< block IDs of 64 bits and packet IDs of 32, instead of 16 and 24
};

/// Empty also when an ID needs more bits than there are, and for what DecodeResend would refuse.
std::span<std::byte> EncodeResend(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                  const RESEND_COMMAND& objCommand);
/// @param objHeader  of the command: its flags tell the width of the IDs
/// @return InvalidHeader for a wrong size, InvalidParameter for block 0 or a last packet before the first.
EGvcpStatus DecodeResend(const GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> arrPayload,
                         RESEND_COMMAND& objCommand);

}  // namespace gev
