#pragma once

#include "TLClass/TLClassEvent/IEventCallback.h"

/// Called once when a camera has gone. What it may call says CDeviceOfflineEvent.
class IDeviceOfflineCallback : public IEventCallback {
public:
    virtual void OnDeviceOffline() = 0;
};
