#include "TLClass/TLClassInfo/CommonInformation.h"

#include <span>
#include <string>

#include "TLClass/TLClassInfo/FeatureRecord.h"

namespace {

using DEVICE_FIELD = FEATURE_FIELD<COMMON_DEVICE_INFO, std::string>;
constexpr DEVICE_FIELD kDeviceFields[] = {
    {"DeviceVersion", &COMMON_DEVICE_INFO::Version, &COMMON_DEVICE_INFO::VersionValid},
    {"DeviceSerialNumber", &COMMON_DEVICE_INFO::SerialNumber, &COMMON_DEVICE_INFO::SerialNumberValid},
    {"DeviceUserID", &COMMON_DEVICE_INFO::UserID, &COMMON_DEVICE_INFO::UserIDValid},
};

using INTERFACE_FIELD = FEATURE_FIELD<COMMON_INTERFACE_INFO, std::string>;
constexpr INTERFACE_FIELD kInterfaceFields[] = {
    {"InterfaceDescription", &COMMON_INTERFACE_INFO::Description, &COMMON_INTERFACE_INFO::DescriptionValid},
};

}  // namespace

COMMON_INTERFACE_INFO CCommonInformation::ReadCommonInterfaceInfo(IFeatureControl* pInterface) {
    return ReadFeatureRecord(pInterface, std::span<const INTERFACE_FIELD>(kInterfaceFields));
}

COMMON_DEVICE_INFO CCommonInformation::ReadCommonDeviceInfo(IFeatureControl* pDevice) {
    return ReadFeatureRecord(pDevice, std::span<const DEVICE_FIELD>(kDeviceFields));
}

std::vector<COMMON_DEVICE_INFO> CCommonInformation::ReadCommonDeviceInfoList(IFeatureControl* pInterface) {
    return ReadFeatureRecordList(pInterface, "DeviceSelector", std::span<const DEVICE_FIELD>(kDeviceFields));
}
