#pragma once

#include <string>
#include <string_view>

namespace producer {

/// Makes a text that a camera sent fit to be shown: valid UTF-8 without control characters. Each byte that isn't part
/// of UTF-8, and each control character, becomes U+FFFD; blanks at the end go.
std::string CleanDeviceText(std::string_view strText);

}  // namespace producer
