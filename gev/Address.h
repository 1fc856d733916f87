#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "gev/FixedText.h"

namespace gev {

/// The 48 bits of a network adapter's address.
class CMACAddress {
public:
    constexpr CMACAddress() = default;

    /// @param nAddress  first octet in bits 47 to 40; the bits above are dropped
    constexpr explicit CMACAddress(std::uint64_t nAddress) : m_nAddress(nAddress & 0xFFFF'FFFF'FFFF) {}

    /// First octet in bits 47 to 40.
    constexpr std::uint64_t GetValue() const { return m_nAddress; }

    /// The halves as the registers have them: the first two octets, the last four.
    constexpr std::uint32_t GetHigh() const { return static_cast<std::uint32_t>(m_nAddress >> 32); }
    constexpr std::uint32_t GetLow() const { return static_cast<std::uint32_t>(m_nAddress); }

    /// The six octets as they stand in a packet.
    static CMACAddress Get(std::span<const std::byte, 6> arrOctets);
    void Put(std::span<std::byte, 6> arrOctets) const;

    friend constexpr auto operator<=>(CMACAddress, CMACAddress) = default;

private:
    std::uint64_t m_nAddress = 0;
};

/// Six pairs of hexadecimal digits in upper case, as in "02-5E-17-00-AD-EA".
CFixedText<17> FormatMAC(CMACAddress objAddress);

/// Reads six parts of one or two hexadecimal digits in either case, all between "-" or all between ":"; nothing else.
std::optional<CMACAddress> ParseMAC(std::string_view strText);

/// An IPv4 address is a number with its first octet highest.
constexpr std::uint32_t MakeIPv4(std::uint8_t nFirst, std::uint8_t nSecond, std::uint8_t nThird, std::uint8_t nFourth) {
    return std::uint32_t{nFirst} << 24 | std::uint32_t{nSecond} << 16 | std::uint32_t{nThird} << 8 | nFourth;
}

/// Four decimal numbers, as in "192.168.42.83".
CFixedText<15> FormatIPv4(std::uint32_t nAddress);

/// Reads four decimal numbers of at most three digits, none over 255, between dots; nothing else.
std::optional<std::uint32_t> ParseIPv4(std::string_view strText);

}  // namespace gev
