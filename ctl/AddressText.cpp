#include "ctl/AddressText.h"

#include <charconv>
#include <cstddef>

namespace {

/// Reads numbers of one byte with a separator between two, and puts them together, first one highest.
template <std::size_t kParts>
std::optional<std::uint64_t> ParseBytes(std::string_view strText, char cSeparator, int nBase, std::size_t nLeastDigits,
                                        std::size_t nMostDigits) {
    std::uint64_t nValue = 0;
    for (std::size_t nPart = 0; nPart < kParts; ++nPart) {
        const std::size_t nEnd = nPart + 1 == kParts ? strText.size() : strText.find(cSeparator);
        if (nEnd == std::string_view::npos || nEnd < nLeastDigits || nEnd > nMostDigits) {
            return std::nullopt;
        }
        std::uint8_t nByte = 0;
        const auto [pEnd, eError] = std::from_chars(strText.data(), strText.data() + nEnd, nByte, nBase);
        if (eError != std::errc() || pEnd != strText.data() + nEnd) {
            return std::nullopt;
        }
        nValue = nValue << 8 | nByte;
        strText.remove_prefix(nPart + 1 == kParts ? nEnd : nEnd + 1);
    }
    return nValue;
}

}  // namespace

std::optional<std::uint32_t> ParseAddress(std::string_view strText) {
    const std::optional<std::uint64_t> nValue = ParseBytes<4>(strText, '.', 10, 1, 3);
    return nValue ? std::optional(static_cast<std::uint32_t>(*nValue)) : std::nullopt;
}

std::optional<std::uint64_t> ParseMAC(std::string_view strText) {
    const std::optional<std::uint64_t> nValue = ParseBytes<6>(strText, '-', 16, 2, 2);
    return nValue ? nValue : ParseBytes<6>(strText, ':', 16, 2, 2);
}
