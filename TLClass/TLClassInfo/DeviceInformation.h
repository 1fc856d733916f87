#pragma once

#include "TLClass/TLClassInfo/DevModuleInfo.h"
#include "TLClass/TLClassInfo/ZrInformation.h"

/// What the two queries of a device have in common: which commands fill the record.
class CDeviceInformation : public CZrInformation {
public:
    /// Asks the producer anew at each call.
    DEV_MODULE_INFO GetInformation();
};
