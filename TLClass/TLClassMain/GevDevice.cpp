#include "TLClass/TLClassMain/GevDevice.h"

#include <utility>

CGevDevice::CGevDevice(CGenTLLib* pLib, boost::shared_ptr<IInterface> pInterface, IF_HANDLE hInterface,
                       DEV_MODULE_INFO objInformation, COMMON_DEVICE_INFO objCommonInfo, GEV_DEV_INFO objGevDevInfo)
    : CDevice(pLib, std::move(pInterface), hInterface, std::move(objInformation), std::move(objCommonInfo)),
      m_objGevDevInfo(std::move(objGevDevInfo)) {}

void CGevDevice::UpdateInformation(const DEV_MODULE_INFO& objRecord) {
    CDevice::UpdateInformation(objRecord);
    if (const auto* pGevDevInfo = dynamic_cast<const GEV_DEV_INFO*>(objRecord.pSpecialInfo)) {
        const CScopedLock objLock(m_csRecords);
        m_objGevDevInfo = *pGevDevInfo;
    }
}

GEV_DEV_INFO CGevDevice::GetGevDevInfo() const {
    const CScopedLock objLock(m_csRecords);
    return m_objGevDevInfo;
}

void CGevDevice::SetGevIP(std::uint64_t nIp) {
    const CScopedLock objLock(m_csRecords);
    m_objGevDevInfo.IPAddress = static_cast<std::int64_t>(nIp);
}
