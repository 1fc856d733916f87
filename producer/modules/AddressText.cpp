#include "producer/modules/AddressText.h"

#include "gev/Address.h"
#include "producer/ProducerError.h"

namespace producer {

std::string AddressText(std::uint32_t nAddress) {
    return std::string(gev::FormatIPv4(nAddress).GetText());
}

std::string MacText(std::uint64_t nMac) {
    return std::string(gev::FormatMAC(gev::CMACAddress(nMac)).GetText());
}

std::uint32_t RequireAddress(const char* pszText, const char* pszWhat) {
    const std::optional<std::uint32_t> nAddress =
        pszText != nullptr ? gev::ParseIPv4(pszText) : std::optional<std::uint32_t>();
    if (!nAddress) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, std::string("the ") + pszWhat + " \"" +
                                                           (pszText != nullptr ? pszText : "") +
                                                           "\" is no IPv4 address like 192.168.42.83");
    }
    return *nAddress;
}

std::optional<std::uint32_t> AddressOfId(std::string_view strId) {
    constexpr std::string_view kPrefix = "IP::";
    return strId.starts_with(kPrefix) ? gev::ParseIPv4(strId.substr(kPrefix.size())) : std::nullopt;
}

}  // namespace producer
