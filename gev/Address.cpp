#include "gev/Address.h"

#include <array>
#include <charconv>
#include <system_error>

#include "gev/BigEndian.h"

namespace gev {

namespace {

/// Reads the digits before nSeparator, or all of them when it isn't there, and takes both from the text.
std::optional<std::uint8_t> TakePart(std::string_view& strText, char nSeparator, int nBase, std::size_t nMostDigits) {
    const std::string_view strPart = strText.substr(0, strText.find(nSeparator));
    unsigned nValue = 0;
    const char* const pEnd = strPart.data() + strPart.size();
    const auto [pStop, nError] = std::from_chars(strPart.data(), pEnd, nValue, nBase);
    if (nError != std::errc{} || pStop != pEnd || strPart.size() > nMostDigits || nValue > 0xFF) {
        return std::nullopt;
    }
    strText.remove_prefix(strPart.size());
    return static_cast<std::uint8_t>(nValue);
}

/// The number of nParts octets with a separator between each two, first octet highest.
std::optional<std::uint64_t> ParseOctets(std::string_view strText, int nParts, char nSeparator, int nBase,
                                         std::size_t nMostDigits) {
    std::uint64_t nAddress = 0;
    for (int i = 0; i < nParts; ++i) {
        if (i > 0) {
            if (strText.empty()) {
                return std::nullopt;
            }
            strText.remove_prefix(1);  // the separator, where the part before ended
        }
        const auto nPart = TakePart(strText, nSeparator, nBase, nMostDigits);
        if (!nPart) {
            return std::nullopt;
        }
        nAddress = nAddress << 8 | *nPart;
    }
    return strText.empty() ? std::optional(nAddress) : std::nullopt;
}

}  // namespace

CMACAddress CMACAddress::Get(std::span<const std::byte, 6> arrOctets) {
    return CMACAddress(std::uint64_t{Get16(arrOctets, 0)} << 32 | Get32(arrOctets, 2));
}

void CMACAddress::Put(std::span<std::byte, 6> arrOctets) const {
    Put16(arrOctets, 0, static_cast<std::uint16_t>(GetHigh()));
    Put32(arrOctets, 2, GetLow());
}

CFixedText<17> FormatMAC(CMACAddress objAddress) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::array<char, 17> arrText{};
    arrText.fill('-');
    for (std::size_t i = 0; i < 6; ++i) {
        const std::uint64_t nOctet = objAddress.GetValue() >> (40 - 8 * i) & 0xFF;
        arrText[3 * i] = kDigits[nOctet >> 4];
        arrText[3 * i + 1] = kDigits[nOctet & 0xF];
    }
    return CFixedText<17>(std::string_view(arrText.data(), arrText.size()));
}

std::optional<CMACAddress> ParseMAC(std::string_view strText) {
    const char nSeparator = strText.find('-') != std::string_view::npos ? '-' : ':';
    const auto nAddress = ParseOctets(strText, 6, nSeparator, 16, 2);
    return nAddress ? std::optional(CMACAddress(*nAddress)) : std::nullopt;
}

CFixedText<15> FormatIPv4(std::uint32_t nAddress) {
    std::array<char, 15> arrText{};
    char* pEnd = arrText.data();
    for (int nShift = 24; nShift >= 0; nShift -= 8) {
        if (nShift < 24) {
            *pEnd++ = '.';
        }
        pEnd = std::to_chars(pEnd, arrText.data() + arrText.size(), nAddress >> nShift & 0xFF).ptr;
    }
    return CFixedText<15>(std::string_view(arrText.data(), pEnd));
}

std::optional<std::uint32_t> ParseIPv4(std::string_view strText) {
    const auto nAddress = ParseOctets(strText, 4, '.', 10, 3);
    return nAddress ? std::optional(static_cast<std::uint32_t>(*nAddress)) : std::nullopt;
}

}  // namespace gev
