#include "TLClass/TLClassMain/TL.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassFeature/FeatureControl.h"
#include "TLClass/TLClassInfo/ZrInformationAgency.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "TLClass/TLClassMain/ITLManager.h"
#include "TLClass/TLClassMain/Interface.h"
#include "TLClass/TLClassMain/InterfaceFactory.h"
#include "TLClass/TLClassMain/ListMerge.h"
#include "TLClass/TLClassXML/LoadXMLAgency.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\TL";

std::string GetID(const CInterface& objInterface) {
    return objInterface.GetInterfaceInformation().ID;
}

bool Contains(const std::vector<boost::shared_ptr<CInterface>>& vecInterface,
              const boost::shared_ptr<CInterface>& pInterface) {
    return std::find(vecInterface.begin(), vecInterface.end(), pInterface) != vecInterface.end();
}

}  // namespace

/// Opens the system module in the producer.
class CTL::CTLOpenAgency : public CAgency {
public:
    explicit CTLOpenAgency(CGenTLLib* pLib) : m_pLib(pLib) {
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(m_pLib->TLOpen(&m_hTL), m_pLib, kFile, __LINE__,
                                                        "CTL::CTLOpenAgency::CTLOpenAgency");
    }
    ~CTLOpenAgency() {
        if (m_bArmed) {
            CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->TLClose(m_hTL), m_pLib, kFile, __LINE__,
                                                 "CTL::CTLOpenAgency::~CTLOpenAgency");
        }
    }

    TL_HANDLE GetHandle() const { return m_hTL; }

private:
    CGenTLLib* m_pLib;
    TL_HANDLE m_hTL = nullptr;
};

/// Reads what is special about each interface for one list update.
class CTL::CInterfaceSpecialInfoAgency : public CAgency {
public:
    explicit CInterfaceSpecialInfoAgency(CTL& objTL) : m_objTL(objTL) {
        m_objTL._UpdateInterfaceSpecialInfo(m_objTL.GetFeatureControl());
    }
    ~CInterfaceSpecialInfoAgency() {
        if (m_bArmed) {
            m_objTL._ClearInterfaceSpecialInfo();
        }
    }

private:
    CTL& m_objTL;
};

CTL::CTL(CGenTLLib* pLib, TL_MODULE_INFO objInformation) : ITL(pLib), m_objInformation(std::move(objInformation)) {}

TL_MODULE_INFO CTL::GetTLInformation() const {
    const CScopedLock objLock(m_csRecords);
    return m_objInformation;
}

std::vector<boost::shared_ptr<IInterface>> CTL::GetInterfaceList() const {
    return _GetGcObjectList<IInterface>();
}

std::vector<boost::shared_ptr<IInterface>> CTL::GetRemovedInterfaceList() const {
    const CScopedLock objLock(m_csRemoved);
    return {m_vecRemovedInterface.begin(), m_vecRemovedInterface.end()};
}

void CTL::DoOpenTL() {
    if (m_bOpened) {
        return;
    }
    CTLOpenAgency objOpen(m_pLib);
    CLoadXMLAgency objLoad(m_objXMLAnalyzer, objOpen.GetHandle());
    auto pFeatureControl = std::make_unique<CFeatureControl>(m_objXMLAnalyzer.GetNodeMapRef());
    _InitSpecialInfo(pFeatureControl.get());
    _SetFeatureControl(std::move(pFeatureControl));
    Dismiss(objOpen);
    Dismiss(objLoad);
    m_hTL = objOpen.GetHandle();
    m_bOpened = true;
}

void CTL::DoCloseTL() {
    const CScopedLock objLock(m_csUpdate);
    if (!m_bOpened) {
        return;
    }
    for (const boost::shared_ptr<CInterface>& pInterface : _GetGcObjectList<CInterface>()) {
        pInterface->DoCloseInterface();
    }
    ClearGcObjectList();
    for (const boost::shared_ptr<CInterface>& pInterface : __ExchangeRemoved({})) {
        pInterface->DoCloseInterface();
    }
    _ClearSpecialInfo();
    _ClearInterfaceSpecialInfo();
    _SetFeatureControl(nullptr);
    m_objXMLAnalyzer.Clear();
    {
        const CScopedLock objRecordsLock(m_csRecords);
        m_objInformation = TL_MODULE_INFO();
    }
    CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->TLClose(m_hTL.exchange(nullptr)), m_pLib, kFile, __LINE__,
                                         "CTL::DoCloseTL");
    m_bOpened = false;
}

void CTL::DoUpdateInterfaceList(std::uint64_t nTimeoutMs, bool* pChanged) {
    const CScopedLock objLock(m_csUpdate);
    *pChanged = false;
    if (!m_bOpened || !__DoUpdateInProducer(nTimeoutMs, pChanged)) {
        return;
    }
    std::vector<IF_MODULE_INFO> vecRecord = CZrInformationAgency::GetAllInterfaceInformation(m_pLib, m_hTL);
    CInterfaceSpecialInfoAgency objSpecialInfo(*this);
    __AttachSpecialInfo(vecRecord);
    const INTERFACE_LIST vecCandidate = __GetCandidates();
    const INTERFACE_LIST vecNew = __MergeInterfaces(vecRecord, vecCandidate);
    __ExchangeRemoved(__GetVanishedInterfaces(vecCandidate, vecNew));
    __OpenInterfaces(vecNew, vecCandidate);
    SetGcObjectList({vecNew.begin(), vecNew.end()});
    Dismiss(objSpecialInfo);
}

bool CTL::__DoUpdateInProducer(std::uint64_t nTimeoutMs, bool* pChanged) {
    bool8_t nChanged = 0;
    const GC_ERROR nResult = m_pLib->TLUpdateInterfaceList(m_hTL, &nChanged, nTimeoutMs);
    *pChanged = nChanged != 0;
    CGenTLErrorCodeVerifier::LogIfFailed(nResult, m_pLib, kFile, __LINE__, "CTL::DoUpdateInterfaceList");
    return nResult == GC_ERR_SUCCESS;
}

// Records and special records belong together by their position alone.
void CTL::__AttachSpecialInfo(std::vector<IF_MODULE_INFO>& vecRecord) {
    const std::vector<SPECIAL_INFO*> vecSpecialInfo = _GetInterfaceSpecialInfoList(vecRecord.size());
    if (vecSpecialInfo.size() != vecRecord.size()) {
        throw CUnexpectedError(-1, "The two interface information vectors have different size", kFile, __LINE__,
                               "CTL::DoUpdateInterfaceList");
    }
    for (std::size_t i = 0; i < vecRecord.size(); ++i) {
        vecRecord[i].pSpecialInfo = vecSpecialInfo[i];
    }
}

CTL::INTERFACE_LIST CTL::__GetCandidates() const {
    INTERFACE_LIST vecCandidate = _GetGcObjectList<CInterface>();
    const CScopedLock objLock(m_csRemoved);
    vecCandidate.insert(vecCandidate.end(), m_vecRemovedInterface.begin(), m_vecRemovedInterface.end());
    return vecCandidate;
}

CTL::INTERFACE_LIST CTL::__MergeInterfaces(const std::vector<IF_MODULE_INFO>& vecRecord,
                                           const INTERFACE_LIST& vecCandidate) {
    const boost::shared_ptr<ITL> pSelf = FindTL(this);
    CANDIDATE_LIST<CInterface> listCandidate = MakeCandidates(vecCandidate, GetID);
    // An interface that the producer lists twice is one object, twice in the list: there is one adapter to open.
    return MergeList(vecRecord, listCandidate, EMatched::Stays, [&](const IF_MODULE_INFO& objRecord) {
        const boost::shared_ptr<IInterface> pInterface(
            CInterfaceFactory::CreateInterface(m_pLib, pSelf, m_hTL, objRecord));
        return boost::dynamic_pointer_cast<CInterface>(pInterface);
    });
}

// Whoever isn't listed any more by its ID. All of them are kept, open as they are.
CTL::INTERFACE_LIST CTL::__GetVanishedInterfaces(const INTERFACE_LIST& vecCandidate, const INTERFACE_LIST& vecNew) {
    std::set<std::string> setListed;
    for (const boost::shared_ptr<CInterface>& pInterface : vecNew) {
        setListed.insert(GetID(*pInterface));
    }
    INTERFACE_LIST vecVanished;
    for (const boost::shared_ptr<CInterface>& pInterface : vecCandidate) {
        // An object can be a candidate twice: it was listed twice, or the update before failed after setting it aside.
        // Kept twice, it would come once more with every failure.
        if (!Contains(vecVanished, pInterface) && !setListed.contains(GetID(*pInterface))) {
            vecVanished.push_back(pInterface);
        }
    }
    return vecVanished;
}

void CTL::__OpenInterfaces(const INTERFACE_LIST& vecNew, const INTERFACE_LIST& vecCandidate) {
    try {
        for (const boost::shared_ptr<CInterface>& pInterface : vecNew) {
            pInterface->DoOpenInterface();
        }
    } catch (...) {
        __TakeBackInterfaces(vecNew, vecCandidate);
        throw;
    }
}

// Nobody would close what only this update knows, and the next one couldn't open it again. What had been set aside and
// was about to be listed is set aside again.
void CTL::__TakeBackInterfaces(const INTERFACE_LIST& vecNew, const INTERFACE_LIST& vecCandidate) {
    const INTERFACE_LIST vecListed = _GetGcObjectList<CInterface>();
    for (const boost::shared_ptr<CInterface>& pInterface : vecNew) {
        if (!Contains(vecCandidate, pInterface)) {
            pInterface->DoCloseInterface();
            continue;
        }
        const CScopedLock objLock(m_csRemoved);
        if (!Contains(vecListed, pInterface) && !Contains(m_vecRemovedInterface, pInterface)) {
            m_vecRemovedInterface.push_back(pInterface);
        }
    }
}

/// @return what was set aside before
CTL::INTERFACE_LIST CTL::__ExchangeRemoved(INTERFACE_LIST vecRemoved) {
    const CScopedLock objLock(m_csRemoved);
    m_vecRemovedInterface.swap(vecRemoved);
    return vecRemoved;
}

// What a transport layer of no particular kind has to say about itself: nothing.

void CTL::_InitSpecialInfo(IFeatureControl* /*pFeatureControl*/) {}

std::vector<SPECIAL_INFO*> CTL::_GetInterfaceSpecialInfoList(std::size_t nCount) {
    return std::vector<SPECIAL_INFO*>(nCount, nullptr);
}

void CTL::_ClearSpecialInfo() {}

void CTL::_UpdateInterfaceSpecialInfo(IFeatureControl* /*pFeatureControl*/) {}

void CTL::_ClearInterfaceSpecialInfo() {}
