#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "GenApi/Types.h"

namespace GenApi_3_0 {

/// An integer as its node's representation shows it: decimal, 0x1F, 192.168.0.1 or 01:23:45:67:89:AB.
std::string FormatAs(std::int64_t nValue, ERepresentation eRepresentation);

/// Reads any of the forms that FormatAs writes; the representation only tells the forms with dots and colons apart.
std::optional<std::int64_t> ParseAs(std::string_view strText, ERepresentation eRepresentation);

}  // namespace GenApi_3_0
