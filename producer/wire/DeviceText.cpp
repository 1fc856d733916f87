#include "producer/wire/DeviceText.h"

#include <algorithm>
#include <cstddef>

namespace producer {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

struct CHARACTER {
    char32_t Code = 0;
    std::size_t Size = 0;  // bytes; 0 for what isn't UTF-8
};

CHARACTER ReadCharacter(std::string_view strText) {
    const auto nFirst = static_cast<unsigned char>(strText.front());
    if (nFirst < 0x80) {
        return {nFirst, 1};
    }
    const std::size_t nSize = nFirst >= 0xF0 ? 4 : nFirst >= 0xE0 ? 3 : 2;
    if (nFirst < 0xC2 || nFirst > 0xF4 || strText.size() < nSize) {
        return {};
    }
    char32_t nCode = nFirst & (0xFFU >> (nSize + 1));
    for (std::size_t i = 1; i < nSize; ++i) {
        const auto nByte = static_cast<unsigned char>(strText[i]);
        if ((nByte & 0xC0) != 0x80) {
            return {};
        }
        nCode = nCode << 6 | (nByte & 0x3FU);
    }
    const bool bTooLong = (nSize == 3 && nCode < 0x800) || (nSize == 4 && nCode < 0x10000);
    if (bTooLong || nCode > 0x10FFFF || (nCode >= 0xD800 && nCode <= 0xDFFF)) {
        return {};
    }
    return {nCode, nSize};
}

/// Also the characters that turn the direction of the text around them, or break its line.
bool IsControl(char32_t nCode) {
    return nCode < 0x20 || (nCode >= 0x7F && nCode < 0xA0) || nCode == 0x2028 || nCode == 0x2029 ||
           (nCode >= 0x202A && nCode <= 0x202E) || (nCode >= 0x2066 && nCode <= 0x2069);
}

}  // namespace

std::string CleanDeviceText(std::string_view strText) {
    std::string strClean;
    strClean.reserve(strText.size());
    while (!strText.empty()) {
        const CHARACTER objCharacter = ReadCharacter(strText);
        const std::size_t nSize = std::max<std::size_t>(objCharacter.Size, 1);
        strClean += objCharacter.Size == 0 || IsControl(objCharacter.Code) ? kReplacement : strText.substr(0, nSize);
        strText.remove_prefix(nSize);
    }
    const std::size_t nEnd = strClean.find_last_not_of(' ');
    strClean.resize(nEnd == std::string::npos ? 0 : nEnd + 1);
    return strClean;
}

}  // namespace producer
