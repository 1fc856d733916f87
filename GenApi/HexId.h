#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace GenApi_3_0 {

/// The ID of a chunk or an event as descriptions write it: hexadecimal in either case, with or without 0x.
/// @return nothing if the text is anything else or has more than 64 bits
std::optional<std::uint64_t> ParseHexId(std::string_view strText);

}  // namespace GenApi_3_0
