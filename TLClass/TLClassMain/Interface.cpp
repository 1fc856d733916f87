#include "TLClass/TLClassMain/Interface.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassFeature/FeatureControl.h"
#include "TLClass/TLClassInfo/CommonInformation.h"
#include "TLClass/TLClassInfo/ZrInformationAgency.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Agency.h"
#include "TLClass/TLClassMain/DeviceFactory.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/ITL.h"
#include "TLClass/TLClassMain/ListMerge.h"
#include "TLClass/TLClassXML/LoadXMLAgency.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\Interface";

std::string GetID(const IDevice& objDevice) {
    return objDevice.GetDeviceInformation().ID;
}

template <typename OBJECT>
bool Contains(const std::vector<boost::shared_ptr<OBJECT>>& vecObject, const boost::shared_ptr<OBJECT>& pObject) {
    return std::find(vecObject.begin(), vecObject.end(), pObject) != vecObject.end();
}

// Records, common and special records belong together by their position alone.
void AttachInfo(std::vector<DEV_MODULE_INFO>& vecRecord, std::vector<COMMON_DEVICE_INFO>& vecCommonInfo,
                const std::vector<SPECIAL_INFO*>& vecSpecialInfo) {
    if (vecCommonInfo.size() != vecRecord.size() || vecSpecialInfo.size() != vecRecord.size()) {
        throw CUnexpectedError(-1, "The two device information vectors have different size", kFile, __LINE__,
                               "CInterface::DoUpdateDeviceList");
    }
    for (std::size_t i = 0; i < vecRecord.size(); ++i) {
        vecRecord[i].pCommonInfo = &vecCommonInfo[i];
        vecRecord[i].pSpecialInfo = vecSpecialInfo[i];
    }
}

}  // namespace

/// Opens the interface in the producer.
class CInterface::CTLOpenInterfaceAgency : public CAgency {
public:
    CTLOpenInterfaceAgency(CGenTLLib* pLib, TL_HANDLE hTL, const std::string& strID) : m_pLib(pLib) {
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(m_pLib->TLOpenInterface(hTL, strID.c_str(), &m_hInterface),
                                                        m_pLib, kFile, __LINE__,
                                                        "CInterface::CTLOpenInterfaceAgency::CTLOpenInterfaceAgency");
    }
    ~CTLOpenInterfaceAgency() {
        if (m_bArmed) {
            CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->IFClose(m_hInterface), m_pLib, kFile, __LINE__,
                                                 "CInterface::CTLOpenInterfaceAgency::~CTLOpenInterfaceAgency");
        }
    }

    IF_HANDLE GetHandle() const { return m_hInterface; }

private:
    CGenTLLib* m_pLib;
    IF_HANDLE m_hInterface = nullptr;
};

/// Reads what is special about each device for one list update.
class CInterface::CDeviceSpecialInfoAgency : public CAgency {
public:
    explicit CDeviceSpecialInfoAgency(CInterface& objInterface) : m_objInterface(objInterface) {
        m_objInterface._UpdateDeviceSpecialInfo(m_objInterface.GetFeatureControl());
    }
    ~CDeviceSpecialInfoAgency() {
        if (m_bArmed) {
            m_objInterface._ClearDeviceSpecialInfo();
        }
    }

private:
    CInterface& m_objInterface;
};

CInterface::CInterface(CGenTLLib* pLib, boost::shared_ptr<ITL> pTL, TL_HANDLE hTL, IF_MODULE_INFO objInformation)
    : IInterface(pLib), m_pTL(std::move(pTL)), m_hTL(hTL), m_objInformation(std::move(objInformation)) {
    m_objInformation.pSpecialInfo = nullptr;
}

IF_MODULE_INFO CInterface::GetInterfaceInformation() const {
    const CScopedLock objLock(m_csRecords);
    return m_objInformation;
}

COMMON_INTERFACE_INFO CInterface::GetCommonInformation() const {
    const CScopedLock objLock(m_csRecords);
    return m_objCommonInfo;
}

std::vector<boost::shared_ptr<IDevice>> CInterface::GetDeviceList() const {
    return _GetGcObjectList<IDevice>();
}

std::vector<boost::shared_ptr<IDevice>> CInterface::GetRemovedDeviceList() const {
    const CScopedLock objLock(m_csRemoved);
    return m_vecRemovedDevice;
}

void CInterface::DoOpenInterface() {
    if (m_bOpened) {
        return;
    }
    CTLOpenInterfaceAgency objOpen(m_pLib, m_hTL, GetInterfaceInformation().ID);
    CLoadXMLAgency objLoad(m_objXMLAnalyzer, objOpen.GetHandle());
    auto pFeatureControl = std::make_unique<CFeatureControl>(m_objXMLAnalyzer.GetNodeMapRef());
    COMMON_INTERFACE_INFO objCommonInfo = CCommonInformation::ReadCommonInterfaceInfo(pFeatureControl.get());
    _InitSpecialInfo(pFeatureControl.get());
    _SetFeatureControl(std::move(pFeatureControl));
    Dismiss(objOpen);
    Dismiss(objLoad);
    m_hInterface = objOpen.GetHandle();
    {
        const CScopedLock objLock(m_csRecords);
        m_objCommonInfo = std::move(objCommonInfo);
    }
    m_bOpened = true;
}

void CInterface::DoCloseInterface() {
    const CScopedLock objLock(m_csUpdate);
    if (!m_bOpened) {
        return;
    }
    for (const boost::shared_ptr<IDevice>& pDevice : GetDeviceList()) {
        pDevice->DoCloseDevice();
    }
    ClearGcObjectList();
    _ClearSpecialInfo();
    _ClearDeviceSpecialInfo();
    _SetFeatureControl(nullptr);
    m_objXMLAnalyzer.Clear();
    {
        const CScopedLock objRecordsLock(m_csRecords);
        m_objCommonInfo = COMMON_INTERFACE_INFO();
    }
    CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->IFClose(m_hInterface.exchange(nullptr)), m_pLib, kFile, __LINE__,
                                         "CInterface::DoCloseInterface");
    m_bOpened = false;
    DropClosedDevices();
}

void CInterface::DropClosedDevices() {
    if (m_bOpened) {
        return;
    }
    DEVICE_LIST vecClosed;  // goes behind the lock: a destructor is anybody's
    const CScopedLock objLock(m_csRemoved);
    const auto itClosed = std::stable_partition(m_vecRemovedDevice.begin(), m_vecRemovedDevice.end(),
                                                [](const auto& pDevice) { return pDevice->IsOpened(); });
    vecClosed.assign(itClosed, m_vecRemovedDevice.end());
    m_vecRemovedDevice.erase(itClosed, m_vecRemovedDevice.end());
}

void CInterface::UpdateInformation(const IF_MODULE_INFO& objRecord) {
    const CScopedLock objLock(m_csRecords);
    m_objInformation = objRecord;
    m_objInformation.pSpecialInfo = nullptr;
}

void CInterface::DoUpdateDeviceList(std::uint64_t nTimeoutMs, bool* pChanged) {
    const CScopedLock objLock(m_csUpdate);
    *pChanged = false;
    if (!m_bOpened || !__DoUpdateInProducer(nTimeoutMs)) {
        return;
    }
    std::vector<DEV_MODULE_INFO> vecRecord = CZrInformationAgency::GetAllDeviceInformation(m_pLib, m_hInterface);
    std::vector<COMMON_DEVICE_INFO> vecCommonInfo = CCommonInformation::ReadCommonDeviceInfoList(GetFeatureControl());
    CDeviceSpecialInfoAgency objSpecialInfo(*this);
    AttachInfo(vecRecord, vecCommonInfo, _GetDeviceSpecialInfoList(vecRecord.size()));
    const DEVICE_LIST vecCandidate = __GetCandidates();
    __ExchangeDevices(__MergeDevices(vecRecord, vecCandidate), vecCandidate);
    Dismiss(objSpecialInfo);
    *pChanged = true;
}

// The producer's own word on a change isn't passed on, unlike that on interfaces: records change where lists don't.
bool CInterface::__DoUpdateInProducer(std::uint64_t nTimeoutMs) {
    bool8_t nChanged = 0;
    const GC_ERROR nResult = m_pLib->IFUpdateDeviceList(m_hInterface, &nChanged, nTimeoutMs);
    CGenTLErrorCodeVerifier::LogIfFailed(nResult, m_pLib, kFile, __LINE__, "CInterface::DoUpdateDeviceList");
    return nResult == GC_ERR_SUCCESS;
}

CInterface::DEVICE_LIST CInterface::__GetCandidates() const {
    DEVICE_LIST vecCandidate = GetDeviceList();
    const CScopedLock objLock(m_csRemoved);
    vecCandidate.insert(vecCandidate.end(), m_vecRemovedDevice.begin(), m_vecRemovedDevice.end());
    return vecCandidate;
}

CInterface::DEVICE_LIST CInterface::__MergeDevices(const std::vector<DEV_MODULE_INFO>& vecRecord,
                                                   const DEVICE_LIST& vecCandidate) {
    CANDIDATE_LIST<IDevice> listCandidate = MakeCandidates(vecCandidate, GetID);
    const boost::shared_ptr<IInterface> pSelf = _GetSelf();
    // Two cameras may answer with one ID: each record has an object of its own.
    DEVICE_LIST vecNew = MergeList(vecRecord, listCandidate, EMatched::Taken, [&](const DEV_MODULE_INFO& objRecord) {
        return boost::shared_ptr<IDevice>(CDeviceFactory::CreateDevice(m_pLib, pSelf, m_hInterface, objRecord));
    });
    // No update is expected to find a special device, so none drops it.
    for (const CANDIDATE<IDevice>& objCandidate : listCandidate) {
        if (objCandidate.pObject->IsSpecialDevice()) {
            vecNew.push_back(objCandidate.pObject);
        }
    }
    return vecNew;
}

// Whoever isn't the same object any more has vanished. Only the open ones are kept.
void CInterface::__ExchangeDevices(DEVICE_LIST vecNew, const DEVICE_LIST& vecCandidate) {
    const CScopedLock objLock(m_csDeviceList);
    // A device that was reached by its address since the candidates were taken isn't this update's to drop.
    for (const boost::shared_ptr<IDevice>& pDevice : GetDeviceList()) {
        if (!Contains(vecCandidate, pDevice)) {
            vecNew.push_back(pDevice);
        }
    }
    SetGcObjectList({vecNew.begin(), vecNew.end()});
    DEVICE_LIST vecRemoved;
    for (const boost::shared_ptr<IDevice>& pDevice : vecCandidate) {
        if (!Contains(vecNew, pDevice) && pDevice->IsOpened()) {
            vecRemoved.push_back(pDevice);
        }
    }
    const CScopedLock objRemovedLock(m_csRemoved);
    m_vecRemovedDevice.swap(vecRemoved);
}

bool CInterface::DoUpdateSpecialDevice(const char* pszKey, void* pBuffer, std::size_t* pSize) {
    const CScopedLock objLock(m_csUpdate);
    if (!m_bOpened) {
        return false;
    }
    const GC_ERROR nResult = m_pLib->IFUpdateSpecialDevice(m_hInterface, pszKey, pBuffer, pSize);
    CGenTLErrorCodeVerifier::LogIfFailed(nResult, m_pLib, kFile, __LINE__, "CInterface::DoUpdateSpecialDevice");
    return nResult == GC_ERR_SUCCESS;
}

void CInterface::_AddDevice(const boost::shared_ptr<IDevice>& pDevice) {
    const CScopedLock objLock(m_csDeviceList);
    AddGcObject(pDevice);
}

boost::shared_ptr<IInterface> CInterface::_GetSelf() const {
    return m_pTL ? boost::dynamic_pointer_cast<IInterface>(m_pTL->FindGcObject(this)) : nullptr;
}

// What an interface of no particular kind has to say about itself: nothing.

void CInterface::_InitSpecialInfo(IFeatureControl* /*pFeatureControl*/) {}

void CInterface::_ClearSpecialInfo() {}

void CInterface::_UpdateDeviceSpecialInfo(IFeatureControl* /*pFeatureControl*/) {}

void CInterface::_ClearDeviceSpecialInfo() {}

std::vector<SPECIAL_INFO*> CInterface::_GetDeviceSpecialInfoList(std::size_t nCount) {
    return std::vector<SPECIAL_INFO*>(nCount, nullptr);
}
