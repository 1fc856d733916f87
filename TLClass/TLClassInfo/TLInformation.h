#pragma once

#include "TLClass/TLClassInfo/TLModuleInfo.h"
#include "TLClass/TLClassInfo/ZrInformation.h"

/// What the two queries of a producer's system module have in common: which commands fill the record.
class CTLInformation : public CZrInformation {
public:
    /// Asks the producer anew at each call.
    TL_MODULE_INFO GetInformation();
};
