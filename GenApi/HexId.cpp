#include "GenApi/HexId.h"

#include <charconv>
#include <system_error>

namespace GenApi_3_0 {

std::optional<std::uint64_t> ParseHexId(std::string_view strText) {
    if (strText.starts_with("0x") || strText.starts_with("0X")) {
        strText.remove_prefix(2);
    }
    std::uint64_t nId = 0;
    const char* pEnd = strText.data() + strText.size();
    const auto objResult = std::from_chars(strText.data(), pEnd, nId, 16);
    if (objResult.ec != std::errc() || objResult.ptr != pEnd) {
        return std::nullopt;
    }
    return nId;
}

}  // namespace GenApi_3_0
