#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace producer {

/// @param nAddress  first octet highest
/// @return as in "192.168.42.83"
std::string AddressText(std::uint32_t nAddress);

/// @param nMac  first octet in bits 47 to 40
/// @return as in "02-5E-17-00-AD-EA"
std::string MacText(std::uint64_t nMac);

/// @param pszWhat  of whom the text comes, for the failure
/// @throws CProducerError  GC_ERR_INVALID_PARAMETER for a null text and for what is no IPv4 address
std::uint32_t RequireAddress(const char* pszText, const char* pszWhat);

/// The address in a device ID of the form "IP::192.168.42.83"; nothing for any other ID.
std::optional<std::uint32_t> AddressOfId(std::string_view strId);

}  // namespace producer
