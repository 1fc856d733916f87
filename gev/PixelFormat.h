#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace gev {

/// Codes of pixel formats. A device may send others.
/// Source: GenICam pixel format naming convention.
enum class EPixelFormat : std::uint32_t {
    Mono8 = 0x01080001,
    Mono10 = 0x01100003,
    Mono10Packed = 0x010C0004,
    Mono12 = 0x01100005,
    Mono12Packed = 0x010C0006,
    Mono14 = 0x01100025,
    Mono16 = 0x01100007,
    BayerGR8 = 0x01080008,
    BayerRG8 = 0x01080009,
    BayerGB8 = 0x0108000A,
    BayerBG8 = 0x0108000B,
    BayerRG12 = 0x01100011,
    RGB8 = 0x02180014,
};

/// How many bits a pixel takes in memory, of any code: its second byte says so.
constexpr std::uint32_t GetBitsPerPixel(EPixelFormat nFormat) {
    return static_cast<std::uint32_t>(nFormat) >> 16 & 0xFF;
}

/// The name as descriptions spell it, "Mono8"; empty for a code that isn't listed above.
std::string_view GetName(EPixelFormat nFormat);

/// The code of a name, compared to the letter.
std::optional<EPixelFormat> FindPixelFormat(std::string_view strName);

}  // namespace gev
