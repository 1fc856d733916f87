#pragma once

#include <vector>

#include "TLClass/TLClassInfo/GevDevInfo.h"
#include "TLClass/TLClassInfo/GevIFInfo.h"
#include "TLClass/TLClassInfo/GevTLInfo.h"

class IFeatureControl;

/// Reads what the features of a module tell about GigE Vision. Nothing here throws because a feature can't be read; see
/// FeatureRecord.h.
class CGevInformation {
public:
    CGevInformation() = delete;

    static GEV_TL_INFO ReadGevTLInfo(IFeatureControl* pTL);
    /// Of an adapter from its own features: the addresses of its subnet.
    static GEV_IF_INFO ReadGevInterfaceInfo(IFeatureControl* pInterface);
    /// Of all adapters from the system's features, in the order of its selector: their default addresses.
    static std::vector<GEV_IF_INFO> ReadGevInterfaceInfoList(IFeatureControl* pTL);
    /// Of a device from its own features. Has no caller yet.
    static GEV_DEV_INFO ReadGevDeviceInfo(IFeatureControl* pDevice);
    /// Of all devices of an adapter, in the order of its selector.
    static std::vector<GEV_DEV_INFO> ReadGevDeviceInfoList(IFeatureControl* pInterface);
};
