#include "gev/PixelFormat.h"

#include <algorithm>
#include <array>
#include <utility>

namespace gev {

namespace {

constexpr std::array<std::pair<EPixelFormat, std::string_view>, 13> kNames = {{
    {EPixelFormat::Mono8, "Mono8"},
    {EPixelFormat::Mono10, "Mono10"},
    {EPixelFormat::Mono10Packed, "Mono10Packed"},
    {EPixelFormat::Mono12, "Mono12"},
    {EPixelFormat::Mono12Packed, "Mono12Packed"},
    {EPixelFormat::Mono14, "Mono14"},
    {EPixelFormat::Mono16, "Mono16"},
    {EPixelFormat::BayerGR8, "BayerGR8"},
    {EPixelFormat::BayerRG8, "BayerRG8"},
    {EPixelFormat::BayerGB8, "BayerGB8"},
    {EPixelFormat::BayerBG8, "BayerBG8"},
    {EPixelFormat::BayerRG12, "BayerRG12"},
    {EPixelFormat::RGB8, "RGB8"},
}};

}  // namespace

std::string_view GetName(EPixelFormat nFormat) {
    const auto itName = std::ranges::find(kNames, nFormat, &std::pair<EPixelFormat, std::string_view>::first);
    return itName == kNames.end() ? std::string_view() : itName->second;
}

std::optional<EPixelFormat> FindPixelFormat(std::string_view strName) {
    const auto itName = std::ranges::find(kNames, strName, &std::pair<EPixelFormat, std::string_view>::second);
    return itName == kNames.end() ? std::nullopt : std::optional(itName->first);
}

}  // namespace gev
