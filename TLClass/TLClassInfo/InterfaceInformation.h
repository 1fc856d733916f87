#pragma once

#include "TLClass/TLClassInfo/IFModuleInfo.h"
#include "TLClass/TLClassInfo/ZrInformation.h"

/// What the two queries of an interface have in common: which commands fill the record.
class CInterfaceInformation : public CZrInformation {
public:
    /// Asks the producer anew at each call.
    IF_MODULE_INFO GetInformation();
};
