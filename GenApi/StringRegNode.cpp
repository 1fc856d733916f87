#include "GenApi/StringRegNode.h"

#include <vector>

namespace GenApi_3_0 {

std::string CStringRegNode::FetchText(bool bIgnoreCache) {
    std::string strText(static_cast<std::size_t>(Block().Length()), '\0');
    Block().Read({reinterpret_cast<std::uint8_t*>(strText.data()), strText.size()}, bIgnoreCache);
    strText.resize(std::min(strText.find('\0'), strText.size()));
    return strText;
}

void CStringRegNode::StoreText(const std::string& strValue, bool /*bVerify*/) {
    std::vector<std::uint8_t> vecBytes(strValue.begin(), strValue.end());
    vecBytes.resize(static_cast<std::size_t>(Block().Length()));
    Block().Write(vecBytes);
}

}  // namespace GenApi_3_0
