#pragma once

#include <cstdint>
#include <string>

/// The byte order that the library is written for, not that of the machine: always little-endian. Values are taken
/// apart arithmetically, so no result depends on either.
bool IsLittleEndian();
bool IsBigEndian();

/// @param nAddress  first octet highest
/// @return four decimal numbers, as in "192.168.42.83".
std::string IPToString(std::uint32_t nAddress);

/// @param nAddress  first octet in bits 47 to 40; the bits above are ignored
/// @return six pairs of hexadecimal digits in upper case, as in "02-5E-17-00-AD-EA".
std::string MACToString(std::uint64_t nAddress);
