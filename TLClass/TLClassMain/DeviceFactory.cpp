#include "TLClass/TLClassMain/DeviceFactory.h"

#include <utility>

#include "TLClass/TLClassMain/Device.h"
#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/TransportLayerType.h"
#include "support/ZrException.h"

namespace {

/// @return pInfo, which has to be there
template <typename INFO>
const INFO& Require(const INFO* pInfo) {
    if (pInfo == nullptr) {
        throw CUnexpectedError(-1, "Invalid parameter", "..\\..\\..\\TLClass\\TLClassMain\\GcFactory", __LINE__,
                               "CDeviceFactory::CreateDevice");
    }
    return *pInfo;
}

}  // namespace

IDevice* CDeviceFactory::CreateDevice(CGenTLLib* pLib, boost::shared_ptr<IInterface> pInterface, IF_HANDLE hInterface,
                                      DEV_MODULE_INFO objInformation) {
    // The pointers lead into an update's own vectors. They are taken out before anything is made of the record.
    const COMMON_DEVICE_INFO& objCommonInfo = Require(std::exchange(objInformation.pCommonInfo, nullptr));
    const SPECIAL_INFO* pSpecialInfo = std::exchange(objInformation.pSpecialInfo, nullptr);
    if (objInformation.TLType == kGevTLType) {
        const GEV_DEV_INFO& objGevDevInfo = Require(dynamic_cast<const GEV_DEV_INFO*>(pSpecialInfo));
        return new CGevDevice(pLib, std::move(pInterface), hInterface, std::move(objInformation), objCommonInfo,
                              objGevDevInfo);
    }
    return new CDevice(pLib, std::move(pInterface), hInterface, std::move(objInformation), objCommonInfo);
}
