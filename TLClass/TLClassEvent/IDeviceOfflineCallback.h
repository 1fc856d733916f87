#pragma once

#include "TLClass/TLClassEvent/IEventCallback.h"

/// Called once when a camera has gone, on a thread of the device's own. It must not close the device or register
/// another callback, nor wait for a thread that does. What it throws is only logged, and keeps the callbacks behind it
/// from being called.
class IDeviceOfflineCallback : public IEventCallback {
public:
    virtual void OnDeviceOffline() = 0;
};
