#include "GenApi/BytesValue.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {

bool CBytesValue::IsValueCacheValid() const {
    const AutoLock objLock(Context().Lock());
    return State().pCell != nullptr && State().pCell->Valid;
}

gcstring CBytesNode::ToString(bool Verify, bool IgnoreCache) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const AutoLock objLock(Context().Lock());
    std::vector<std::uint8_t> vecBytes(static_cast<std::size_t>(Block().Length()));
    Get(vecBytes.data(), static_cast<std::int64_t>(vecBytes.size()), Verify, IgnoreCache);
    std::string strText = "0x";
    strText.reserve(2 + vecBytes.size() * 2);
    for (const std::uint8_t nByte : vecBytes) {
        strText += kDigits[nByte >> 4U];
        strText += kDigits[nByte & 0xFU];
    }
    return strText;
}

void CBytesNode::FromString(const gcstring& ValueStr, bool Verify) {
    std::string_view strDigits = TrimXmlSpace(ValueStr.view());
    if (strDigits.starts_with("0x") || strDigits.starts_with("0X")) {
        strDigits.remove_prefix(2);
    }
    std::vector<std::uint8_t> vecBytes;
    while (strDigits.size() >= 2) {
        std::uint8_t nByte = 0;
        const auto objResult = std::from_chars(strDigits.data(), strDigits.data() + 2, nByte, 16);
        if (objResult.ec != std::errc() || objResult.ptr != strDigits.data() + 2) {
            break;
        }
        vecBytes.push_back(nByte);
        strDigits.remove_prefix(2);
    }
    if (!strDigits.empty()) {
        GenICam_3_0::Throw<GenICam_3_0::InvalidArgumentException>(
            Subject() + ": the text isn't a row of bytes in hexadecimal, two digits each");
    }
    Set(vecBytes.data(), static_cast<std::int64_t>(vecBytes.size()), Verify);
}

}  // namespace GenApi_3_0
