#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <QString>

/// The two GVCP datagrams that give a camera a new address by its MAC, ready to be sent in this order.
struct RECOVERY_PACKETS {
    std::array<std::uint8_t, 84> ForceIPEx;  ///< vendor command 0x9000: the camera stores the address and the mask
    std::array<std::uint8_t, 64> ForceIP;    ///< FORCEIP_CMD with address 0.0.0.0: it starts its IP configuration anew
};

/// Fills the pair from what the user typed.
/// @param strMAC  parts in hexadecimal between "-". Nothing is refused: a part that isn't a number gives 0, a longer
///                number its low byte, missing parts keep the template's bytes, and more parts than six run on into the
///                bytes behind the MAC, up to the end of each packet.
/// @param strIP   four decimal parts between "."; a part that isn't a number gives 0, a larger one its low byte.
/// @return nothing if the address hasn't four parts or its first octet is 0.
std::optional<RECOVERY_PACKETS> FillRecoveryPackets(const QString& strMAC, const QString& strIP);

/// The value of a dotted address, first octet highest. Tests neither the number of parts nor their range: parts over
/// 255 carry into the octet before, a fifth part adds to the first. A part of more than three characters gives 0.
std::uint32_t __IPStringToUint(const char* pText);

/// Takes an address apart, first octet first.
void __UintToIPOctets(std::uint32_t nAddress, std::array<int, 4>& arrOctets);
