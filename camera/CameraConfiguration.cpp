#include "camera/CameraConfiguration.h"

#include <bit>
#include <charconv>
#include <stdexcept>
#include <system_error>

#include "gev/Address.h"

namespace camera {

IP_SETTING ParseIPSetting(std::string_view strText) {
    const std::size_t nSlash = strText.find('/');
    const auto nAddress = gev::ParseIPv4(strText.substr(0, nSlash));
    unsigned nPrefix = 0;
    bool bPrefix = false;
    if (nSlash != std::string_view::npos) {
        const char* const pEnd = strText.data() + strText.size();
        const auto objResult = std::from_chars(strText.data() + nSlash + 1, pEnd, nPrefix);
        bPrefix = objResult.ec == std::errc() && objResult.ptr == pEnd && nPrefix >= 1 && nPrefix <= 30;
    }
    if (!nAddress || !bPrefix) {
        throw std::invalid_argument("'" + std::string(strText) +
                                    "' is no address with a prefix of 1 to 30 bits, as 192.168.1.5/24 is");
    }
    const IP_SETTING objSetting{*nAddress, ~std::uint32_t{0} << (32 - nPrefix), 0};
    if (!IsUsable(objSetting)) {
        throw std::invalid_argument("'" + std::string(strText) + "' is no address that a host may have");
    }
    return objSetting;
}

bool IsUsable(const IP_SETTING& objSetting) {
    const std::uint32_t nHost = objSetting.Address & ~objSetting.Mask;
    const auto nFirst = objSetting.Address >> 24;
    const int nPrefix = std::countl_one(objSetting.Mask);
    // The mask leaves room for a subnet's own address, its broadcast address and a host.
    return nPrefix >= 1 && nPrefix <= 30 && nPrefix + std::countr_zero(objSetting.Mask) == 32 && nFirst >= 1 &&
           nFirst < 224 && nFirst != 127 && nHost != 0 && nHost != ~objSetting.Mask;
}

}  // namespace camera
