#include "TLClass/TLClassMain/GevInterface.h"

#include <algorithm>
#include <new>
#include <utility>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassInfo/GevInformation.h"
#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/SpecialDeviceReply.h"
#include "TLClass/TLClassMain/TransportLayerType.h"
#include "support/Address.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\GevInterface";

}  // namespace

void CGevInterface::UpdateInformation(const IF_MODULE_INFO& objRecord) {
    CInterface::UpdateInformation(objRecord);
    if (const auto* pGevIfInfo = dynamic_cast<const GEV_IF_INFO*>(objRecord.pSpecialInfo)) {
        const CScopedLock objLock(m_csRecords);
        m_objGevIfInfo = *pGevIfInfo;
    }
}

GEV_IF_INFO CGevInterface::GetGevIfInfo() const {
    const CScopedLock objLock(m_csRecords);
    return m_objGevIfInfo;
}

void CGevInterface::_InitSpecialInfo(IFeatureControl* pFeatureControl) {
    const GEV_IF_INFO objGevIfInfo = CGevInformation::ReadGevInterfaceInfo(pFeatureControl);
    const CScopedLock objLock(m_csRecords);
    m_objGevIfInfo = objGevIfInfo;
}

void CGevInterface::_ClearSpecialInfo() {
    const CScopedLock objLock(m_csRecords);
    m_objGevIfInfo = GEV_IF_INFO();
}

void CGevInterface::_UpdateDeviceSpecialInfo(IFeatureControl* pFeatureControl) {
    m_vecDeviceSpecialInfo = CGevInformation::ReadGevDeviceInfoList(pFeatureControl);
}

void CGevInterface::_ClearDeviceSpecialInfo() {
    m_vecDeviceSpecialInfo.clear();
}

// The count isn't looked at: a producer whose selector counts otherwise than its list fails the update.
std::vector<SPECIAL_INFO*> CGevInterface::_GetDeviceSpecialInfoList(std::size_t /*nCount*/) {
    std::vector<SPECIAL_INFO*> vecSpecialInfo;
    for (GEV_DEV_INFO& objInfo : m_vecDeviceSpecialInfo) {
        vecSpecialInfo.push_back(&objInfo);
    }
    return vecSpecialInfo;
}

boost::shared_ptr<CGevDevice> CGevInterface::DoOpenDeviceByIP(std::uint64_t nIp, std::uint32_t nAccessMode) {
    const CScopedLock objLock(m_csOpenByIP);
    __SearchDeviceByIP(nIp);
    DEV_MODULE_INFO objInformation;
    objInformation.ID = "IP::" + IPToString(static_cast<std::uint32_t>(nIp));
    objInformation.TLType = kGevTLType;
    boost::shared_ptr<CGevDevice> pDevice(new CGevDevice(m_pLib, _GetSelf(), GetHandle(), std::move(objInformation),
                                                         COMMON_DEVICE_INFO(), GEV_DEV_INFO()));
    pDevice->SetGevIP(nIp);
    _AddDevice(pDevice);
    pDevice->DoOpenDevice(nAccessMode);
    return pDevice;
}

/// Makes room for a device about to be opened at its address.
void CGevInterface::__SearchDeviceByIP(std::uint64_t nIp) {
    const std::vector<boost::shared_ptr<CGevDevice>> vecDevice = _GetGcObjectList<CGevDevice>();
    const auto itFound = std::find_if(vecDevice.begin(), vecDevice.end(), [&](const auto& pDevice) {
        return static_cast<std::uint64_t>(pDevice->GetGevDevInfo().IPAddress) == nIp;
    });
    if (itFound == vecDevice.end()) {
        return;
    }
    if ((*itFound)->IsOpened()) {
        throw CInvalidAccessError("The device has already been opened", kFile, __LINE__,
                                  "CGevInterface::__SearchDeviceByIP");
    }
    RemoveGcObject(*itFound);
}

bool CGevInterface::DoCreateSpecialDevice(const std::string& strIP) {
    const CScopedLock objLock(m_csCreateSpecial);
    CSpecialDeviceReply objReply;
    std::size_t nSize = CSpecialDeviceReply::kSize;
    if (!DoUpdateSpecialDevice(strIP.c_str(), objReply.GetBuffer(), &nSize)) {
        return false;
    }
    const boost::shared_ptr<CGevDevice> pDevice(
        new (std::nothrow) CGevDevice(m_pLib, _GetSelf(), GetHandle(), objReply.GetDeviceInfo(strIP),
                                      objReply.GetCommonInfo(), objReply.GetGevInfo(strIP)));
    if (!pDevice) {
        return false;
    }
    pDevice->SetSpecialDevice(true);
    pDevice->SetSpecialDeviceIP(strIP);
    _AddDevice(pDevice);
    return true;
}

void CGevInterface::DoUpdateAllSpecialDevices() {
    const CScopedLock objLock(m_csUpdateSpecial);
    // Each call gets the size that the one before it left, which a producer may make smaller for all that follow.
    std::size_t nSize = CSpecialDeviceReply::kSize;
    for (const boost::shared_ptr<IDevice>& pListed : GetDeviceList()) {
        const auto pDevice = boost::dynamic_pointer_cast<CGevDevice>(pListed);
        if (!pDevice || !pDevice->IsSpecialDevice()) {
            continue;
        }
        nSize = std::min(nSize, CSpecialDeviceReply::kSize);  // but never larger than the buffer
        CSpecialDeviceReply objReply;
        const std::string strIP = pDevice->GetSpecialDeviceIP();
        if (DoUpdateSpecialDevice(strIP.c_str(), objReply.GetBuffer(), &nSize)) {
            COMMON_DEVICE_INFO objCommonInfo = objReply.GetCommonInfo();
            GEV_DEV_INFO objGevInfo = objReply.GetGevInfo(strIP);
            DEV_MODULE_INFO objRecord = objReply.GetDeviceInfo(strIP);
            objRecord.pCommonInfo = &objCommonInfo;
            objRecord.pSpecialInfo = &objGevInfo;
            pDevice->UpdateInformation(objRecord);
        } else if (!pDevice->IsOpened()) {
            RemoveGcObject(pDevice);
        }
    }
}
