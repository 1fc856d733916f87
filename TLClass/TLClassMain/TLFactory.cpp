#include "TLClass/TLClassMain/TLFactory.h"

#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/TL.h"
#include "TLClass/TLClassMain/TransportLayerType.h"

ITL* CTLFactory::CreateTL(CGenTLLib* pLib, const TL_MODULE_INFO& objInformation) {
    if (objInformation.TLType == kGevTLType) {
        return new CGevTL(pLib, objInformation);
    }
    return new CTL(pLib, objInformation);
}
