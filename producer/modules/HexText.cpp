#include "producer/modules/HexText.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace producer {

std::string HexText(std::uint64_t nValue, std::size_t nLeastDigits) {
    char szText[16];
    const std::string strDigits(szText, std::to_chars(szText, std::end(szText), nValue, 16).ptr);
    return std::string(nLeastDigits - std::min(nLeastDigits, strDigits.size()), '0') + strDigits;
}

}  // namespace producer
