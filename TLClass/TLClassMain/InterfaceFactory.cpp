#include "TLClass/TLClassMain/InterfaceFactory.h"

#include <utility>

#include "TLClass/TLClassMain/GevInterface.h"
#include "TLClass/TLClassMain/Interface.h"
#include "TLClass/TLClassMain/TransportLayerType.h"

IInterface* CInterfaceFactory::CreateInterface(CGenTLLib* pLib, boost::shared_ptr<ITL> pTL, TL_HANDLE hTL,
                                               const IF_MODULE_INFO& objInformation) {
    if (objInformation.TLType == kGevTLType) {
        return new CGevInterface(pLib, std::move(pTL), hTL, objInformation);
    }
    return new CInterface(pLib, std::move(pTL), hTL, objInformation);
}
