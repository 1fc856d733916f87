#include "TLClass/TLClassInfo/GevInformation.h"

#include <cstdint>
#include <span>

#include "TLClass/TLClassInfo/FeatureRecord.h"

namespace {

using TL_FIELD = FEATURE_FIELD<GEV_TL_INFO, std::int64_t>;
constexpr TL_FIELD kTLFields[] = {
    {"GevVersionMajor", &GEV_TL_INFO::VersionMajor, &GEV_TL_INFO::VersionMajorValid},
    {"GevVersionMinor", &GEV_TL_INFO::VersionMinor, &GEV_TL_INFO::VersionMinorValid},
};

using INTERFACE_FIELD = FEATURE_FIELD<GEV_IF_INFO, std::int64_t>;
constexpr INTERFACE_FIELD kInterfaceFields[] = {
    {"GevInterfaceGateway", &GEV_IF_INFO::Gateway, &GEV_IF_INFO::GatewayValid},
    {"GevInterfaceSubnetIPAddress", &GEV_IF_INFO::IPAddress, &GEV_IF_INFO::IPAddressValid},
    {"GevInterfaceMACAddress", &GEV_IF_INFO::MACAddress, &GEV_IF_INFO::MACAddressValid},
    {"GevInterfaceSubnetMask", &GEV_IF_INFO::SubnetMask, &GEV_IF_INFO::SubnetMaskValid},
};
// The same record as the system sees it: other features, another order.
constexpr INTERFACE_FIELD kInterfaceFieldsOfTL[] = {
    {"GevInterfaceDefaultGateway", &GEV_IF_INFO::Gateway, &GEV_IF_INFO::GatewayValid},
    {"GevInterfaceDefaultIPAddress", &GEV_IF_INFO::IPAddress, &GEV_IF_INFO::IPAddressValid},
    {"GevInterfaceDefaultSubnetMask", &GEV_IF_INFO::SubnetMask, &GEV_IF_INFO::SubnetMaskValid},
    {"GevInterfaceMACAddress", &GEV_IF_INFO::MACAddress, &GEV_IF_INFO::MACAddressValid},
};

using DEVICE_FIELD = FEATURE_FIELD<GEV_DEV_INFO, std::int64_t>;
constexpr DEVICE_FIELD kDeviceFields[] = {
    {"GevDeviceGateway", &GEV_DEV_INFO::Gateway, &GEV_DEV_INFO::GatewayValid},
    {"GevDeviceIPAddress", &GEV_DEV_INFO::IPAddress, &GEV_DEV_INFO::IPAddressValid},
    {"GevDeviceMACAddress", &GEV_DEV_INFO::MACAddress, &GEV_DEV_INFO::MACAddressValid},
    {"GevDeviceSubnetMask", &GEV_DEV_INFO::SubnetMask, &GEV_DEV_INFO::SubnetMaskValid},
};

}  // namespace

GEV_TL_INFO CGevInformation::ReadGevTLInfo(IFeatureControl* pTL) {
    return ReadFeatureRecord(pTL, std::span<const TL_FIELD>(kTLFields));
}

GEV_IF_INFO CGevInformation::ReadGevInterfaceInfo(IFeatureControl* pInterface) {
    return ReadFeatureRecord(pInterface, std::span<const INTERFACE_FIELD>(kInterfaceFields));
}

std::vector<GEV_IF_INFO> CGevInformation::ReadGevInterfaceInfoList(IFeatureControl* pTL) {
    return ReadFeatureRecordList(pTL, "InterfaceSelector", std::span<const INTERFACE_FIELD>(kInterfaceFieldsOfTL));
}

GEV_DEV_INFO CGevInformation::ReadGevDeviceInfo(IFeatureControl* pDevice) {
    return ReadFeatureRecord(pDevice, std::span<const DEVICE_FIELD>(kDeviceFields));
}

std::vector<GEV_DEV_INFO> CGevInformation::ReadGevDeviceInfoList(IFeatureControl* pInterface) {
    return ReadFeatureRecordList(pInterface, "DeviceSelector", std::span<const DEVICE_FIELD>(kDeviceFields));
}
