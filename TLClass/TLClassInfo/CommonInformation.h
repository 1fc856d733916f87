#pragma once

#include <vector>

#include "TLClass/TLClassInfo/CommonDeviceInfo.h"
#include "TLClass/TLClassInfo/CommonInterfaceInfo.h"

class IFeatureControl;

/// Reads what the features of a module tell whatever its transport layer. Nothing here throws because a feature can't
/// be read; see FeatureRecord.h.
class CCommonInformation {
public:
    CCommonInformation() = delete;

    static COMMON_INTERFACE_INFO ReadCommonInterfaceInfo(IFeatureControl* pInterface);
    /// Of a device from its own features. Has no caller yet.
    static COMMON_DEVICE_INFO ReadCommonDeviceInfo(IFeatureControl* pDevice);
    /// Of all devices of an interface, in the order of its selector.
    static std::vector<COMMON_DEVICE_INFO> ReadCommonDeviceInfoList(IFeatureControl* pInterface);
};
