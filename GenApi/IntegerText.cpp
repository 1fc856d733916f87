#include "GenApi/IntegerText.h"

#include <charconv>
#include <system_error>

#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

constexpr int kIpParts = 4;
constexpr int kMacParts = 6;

std::string FormatIp(std::int64_t nValue) {
    std::string strText;
    for (int i = kIpParts - 1; i >= 0; --i) {
        strText += std::to_string((static_cast<std::uint64_t>(nValue) >> (8 * static_cast<unsigned>(i))) & 0xFFU);
        strText += i > 0 ? "." : "";
    }
    return strText;
}

std::string FormatMac(std::int64_t nValue) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string strText;
    for (int i = kMacParts - 1; i >= 0; --i) {
        const std::uint64_t nOctet = (static_cast<std::uint64_t>(nValue) >> (8 * static_cast<unsigned>(i))) & 0xFFU;
        strText += kDigits[nOctet >> 4U];
        strText += kDigits[nOctet & 0xFU];
        strText += i > 0 ? ":" : "";
    }
    return strText;
}

std::optional<std::int64_t> ParseOctets(std::string_view strText, char cSeparator, int nParts, int nBase) {
    std::uint64_t nValue = 0;
    for (int i = 0; i < nParts; ++i) {
        const std::size_t nEnd = i + 1 < nParts ? strText.find(cSeparator) : strText.size();
        if (nEnd == std::string_view::npos) {
            return std::nullopt;
        }
        unsigned nOctet = 0;
        const auto objResult = std::from_chars(strText.data(), strText.data() + nEnd, nOctet, nBase);
        if (objResult.ec != std::errc() || objResult.ptr != strText.data() + nEnd || nOctet > 0xFF) {
            return std::nullopt;
        }
        nValue = nValue << 8U | nOctet;
        strText.remove_prefix(i + 1 < nParts ? nEnd + 1 : nEnd);
    }
    return static_cast<std::int64_t>(nValue);
}

}  // namespace

std::string FormatAs(std::int64_t nValue, ERepresentation eRepresentation) {
    switch (eRepresentation) {
        case HexNumber:
            return FormatHex(nValue);
        case IPV4Address:
            return FormatIp(nValue);
        case MACAddress:
            return FormatMac(nValue);
        default:
            return FormatInteger(nValue);
    }
}

std::optional<std::int64_t> ParseAs(std::string_view strText, ERepresentation eRepresentation) {
    strText = TrimXmlSpace(strText);
    if (eRepresentation == IPV4Address && strText.find('.') != std::string_view::npos) {
        return ParseOctets(strText, '.', kIpParts, 10);
    }
    if (eRepresentation == MACAddress && strText.find(':') != std::string_view::npos) {
        return ParseOctets(strText, ':', kMacParts, 16);
    }
    return ParseInteger(strText);
}

}  // namespace GenApi_3_0
