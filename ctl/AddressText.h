#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Four decimal numbers up to 255 with "." between them, nothing before or behind.
/// @return first octet highest
std::optional<std::uint32_t> ParseAddress(std::string_view strText);

/// Six pairs of hexadecimal digits with "-" or ":" between them, the same one throughout.
/// @return first octet in bits 47 to 40
std::optional<std::uint64_t> ParseMAC(std::string_view strText);
