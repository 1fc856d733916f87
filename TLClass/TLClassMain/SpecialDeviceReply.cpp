#include "TLClass/TLClassMain/SpecialDeviceReply.h"

#include <algorithm>

#include "TLClass/TLClassMain/Ipcalc.h"
#include "TLClass/TLClassMain/TransportLayerType.h"
#include "support/Address.h"

namespace {

// Bytes from the start of the header.
constexpr std::size_t kAccessStatusOffset = 16;
constexpr std::size_t kMACAddressOffset = 18;
constexpr std::size_t kSubnetMaskOffset = 60;
constexpr std::size_t kGatewayOffset = 76;
constexpr std::size_t kVendorOffset = 80;
constexpr std::size_t kModelOffset = 112;
constexpr std::size_t kVersionOffset = 144;
constexpr std::size_t kSerialNumberOffset = 224;
constexpr std::size_t kUserIDOffset = 240;

constexpr std::size_t kMACAddressLength = 6;
constexpr std::size_t kIPAddressLength = 4;
constexpr std::size_t kNameLength = 32;       // vendor, model, version
constexpr std::size_t kShortNameLength = 16;  // serial number, user ID

}  // namespace

DEV_MODULE_INFO CSpecialDeviceReply::GetDeviceInfo(const std::string& strIP) const {
    DEV_MODULE_INFO objInfo;
    const std::string strMAC =
        MACToString(static_cast<std::uint64_t>(__GetNumber(kMACAddressOffset, kMACAddressLength)));
    objInfo.Model = __GetText(kModelOffset, kNameLength);
    objInfo.ModelValid = true;
    objInfo.ID = objInfo.Model + "(" + strMAC + ")";
    objInfo.IDValid = true;
    objInfo.Vendor = __GetText(kVendorOffset, kNameLength);
    objInfo.VendorValid = true;
    objInfo.TLType = kGevTLType;
    objInfo.TLTypeValid = true;
    objInfo.DisplayName = objInfo.Model + "(" + strIP + "[" + strMAC + "])";
    objInfo.DisplayNameValid = true;
    // The one number that isn't in network order.
    objInfo.AccessStatus = m_arrBytes[kAccessStatusOffset] | m_arrBytes[kAccessStatusOffset + 1] << 8;
    objInfo.AccessStatusValid = true;
    return objInfo;
}

COMMON_DEVICE_INFO CSpecialDeviceReply::GetCommonInfo() const {
    COMMON_DEVICE_INFO objInfo;
    objInfo.SerialNumber = __GetText(kSerialNumberOffset, kShortNameLength);
    objInfo.SerialNumberValid = 1;
    objInfo.Version = __GetText(kVersionOffset, kNameLength);
    objInfo.VersionValid = 1;
    objInfo.UserID = __GetText(kUserIDOffset, kShortNameLength);
    objInfo.UserIDValid = 1;
    return objInfo;
}

GEV_DEV_INFO CSpecialDeviceReply::GetGevInfo(const std::string& strIP) const {
    GEV_DEV_INFO objInfo;
    objInfo.IPAddress = Cipcalc().StringToIp(strIP.c_str());
    objInfo.IPAddressValid = 1;
    objInfo.SubnetMask = __GetNumber(kSubnetMaskOffset, kIPAddressLength);
    objInfo.SubnetMaskValid = 1;
    objInfo.MACAddress = __GetNumber(kMACAddressOffset, kMACAddressLength);
    objInfo.MACAddressValid = 1;
    objInfo.Gateway = __GetNumber(kGatewayOffset, kIPAddressLength);
    objInfo.GatewayValid = 1;
    return objInfo;
}

std::string CSpecialDeviceReply::__GetText(std::size_t nOffset, std::size_t nLength) const {
    const auto* pBegin = m_arrBytes.data() + nOffset;
    return {pBegin, std::find(pBegin, pBegin + nLength, 0)};
}

std::int64_t CSpecialDeviceReply::__GetNumber(std::size_t nOffset, std::size_t nLength) const {
    std::int64_t nNumber = 0;
    for (std::size_t i = 0; i < nLength; ++i) {
        nNumber = nNumber << 8 | m_arrBytes[nOffset + i];
    }
    return nNumber;
}
