#pragma once

#include <ostream>

#include <nlohmann/json.hpp>

/// Writes indented JSON with a line end behind it. Text that isn't UTF-8, as a camera may have it, is mended.
inline void WriteJson(std::ostream& objOut, const nlohmann::ordered_json& objValue) {
    constexpr int kIndent = 2;
    objOut << objValue.dump(kIndent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}
