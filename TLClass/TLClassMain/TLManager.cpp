#include "TLClass/TLClassMain/TLManager.h"

#include <algorithm>
#include <optional>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassInfo/TLInfomationFromEmpty.h"
#include "TLClass/TLClassLoadTL/CtiRetrival.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Agency.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "TLClass/TLClassMain/TL.h"
#include "TLClass/TLClassMain/TLFactory.h"
#include "support/Environment.h"
#include "support/ScopedLock.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\TLManager";
constexpr const char* kCacheVariable = "GENICAM_CACHE_V3_0";
constexpr const char* kCacheRootVariable = "ALLUSERSPROFILE";

}  // namespace

/// Initialises a producer.
class CTLManager::CGCInitLibAgency : public CAgency {
public:
    explicit CGCInitLibAgency(CGenTLLib* pLib) : m_pLib(pLib) {
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(m_pLib->GCInitLib(), m_pLib, kFile, __LINE__,
                                                        "CTLManager::CGCInitLibAgency::CGCInitLibAgency");
    }
    ~CGCInitLibAgency() {
        if (m_bArmed) {
            CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->GCCloseLib(), m_pLib, kFile, __LINE__,
                                                 "CTLManager::CGCInitLibAgency::~CGCInitLibAgency");
        }
    }

private:
    CGenTLLib* m_pLib;
};

/// Lists a producer before its system module opens, so that the module finds itself in the list.
class CTLManager::CAddTLAgency : public CAgency {
public:
    CAddTLAgency(CTLManager& objManager, const TL_PAIR& objPair) : m_objManager(objManager) {
        m_objManager.__Append(objPair);
    }
    ~CAddTLAgency() {
        if (m_bArmed) {
            m_objManager.__EraseLast();
        }
    }

private:
    CTLManager& m_objManager;
};

/// Loads all producers. If one of them fails, its constructor throws, which means that no destructor runs: the
/// producers before it stay loaded. That is wanted.
class CTLManager::CLoadTLsAgency : public CAgency {
public:
    CLoadTLsAgency(CTLManager& objManager, const std::vector<std::string>& vecPath) : m_objManager(objManager) {
        m_objManager.__LoadTLs(vecPath);
    }
    ~CLoadTLsAgency() {
        if (m_bArmed) {
            m_objManager.__CloseAllTL();
        }
    }

private:
    CTLManager& m_objManager;
};

std::atomic<CTLManager*> CTLManager::s_pInstance = nullptr;

CCriticalSection& CTLManager::s_csInstance() {
    static CCriticalSection& csInstance = *new CCriticalSection;
    return csInstance;
}

CTLManager* CTLManager::GetInstance() {
    if (s_pInstance == nullptr) {
        const CScopedLock objLock(s_csInstance());
        if (s_pInstance == nullptr) {
            s_pInstance = new CTLManager;
        }
    }
    return s_pInstance;
}

ITLManager* GetTLManager() {
    return CTLManager::GetInstance();
}

boost::shared_ptr<ITL> FindTL(const ITL* pTL) {
    return CTLManager::GetInstance()->FindTL(pTL);
}

boost::shared_ptr<CGenTLLib> FindLib(const CGenTLLib* pLib) {
    return CTLManager::GetInstance()->FindLib(pLib);
}

void CTLManager::DoInit(const std::vector<std::string>& vecFileName) {
    const CScopedLock objLock(m_csManager);
    if (m_bInitialized) {
        throw CUnexpectedError(-1, "Can not initialize again without uninitialization", kFile, __LINE__,
                               "CTLManager::DoInit");
    }
    __SetGenICamCacheEnvironment();
    CLoadTLsAgency objLoad(*this, CCtiRetrival::GetTLFilePaths(vecFileName));
    Dismiss(objLoad);
    m_bInitialized = true;
}

void CTLManager::DoUninit() {
    const CScopedLock objLock(m_csManager);
    if (!m_bInitialized) {
        return;
    }
    __CloseAllTL();
    m_bInitialized = false;
}

std::vector<boost::shared_ptr<ITL>> CTLManager::GetTLList() const {
    const CScopedLock objLock(m_csTLList);
    std::vector<boost::shared_ptr<ITL>> vecTL;
    for (const TL_PAIR& objPair : m_vecTL) {
        vecTL.push_back(objPair.first);
    }
    return vecTL;
}

boost::shared_ptr<ITL> CTLManager::FindTL(const ITL* pTL) const {
    const CScopedLock objLock(m_csTLList);
    const auto itFound = std::find_if(m_vecTL.begin(), m_vecTL.end(),
                                      [&](const TL_PAIR& objPair) { return objPair.first.get() == pTL; });
    return itFound == m_vecTL.end() ? nullptr : itFound->first;
}

boost::shared_ptr<CGenTLLib> CTLManager::FindLib(const CGenTLLib* pLib) const {
    const CScopedLock objLock(m_csTLList);
    const auto itFound = std::find_if(m_vecTL.begin(), m_vecTL.end(),
                                      [&](const TL_PAIR& objPair) { return objPair.second.get() == pLib; });
    return itFound == m_vecTL.end() ? nullptr : itFound->second;
}

void CTLManager::AddTL(const std::string& strFileName) {
    const CScopedLock objLock(m_csManager);
    __LoadTLs(CCtiRetrival::GetTLFilePaths({strFileName}));
}

void CTLManager::RemoveLastTL() {
    const CScopedLock objLock(m_csManager);
    if (const TL_PAIR objLast = __GetLast(); objLast.first) {
        __CloseTL(objLast);
        __EraseLast();
    }
}

void CTLManager::__LoadTLs(const std::vector<std::string>& vecPath) {
    for (const std::string& strPath : vecPath) {
        __LoadTL(strPath);
    }
}

void CTLManager::__LoadTL(const std::string& strPath) {
    const boost::shared_ptr<CGenTLLib> pLib(new CGenTLLib(strPath));
    CGCInitLibAgency objInit(pLib.get());
    const boost::shared_ptr<ITL> pTL(
        CTLFactory::CreateTL(pLib.get(), CTLInfomationFromEmpty(pLib.get()).GetInformation()));
    CAddTLAgency objAdd(*this, {pTL, pLib});
    m_nTLCount = static_cast<std::uint32_t>(GetTLList().size()) + 1;
    boost::dynamic_pointer_cast<CTL>(pTL)->DoOpenTL();
    Dismiss(objAdd);
    Dismiss(objInit);
}

// First to last, so in the order of loading.
void CTLManager::__CloseAllTL() {
    for (TL_PAIR objFirst = __GetFirst(); objFirst.first; objFirst = __GetFirst()) {
        __CloseTL(objFirst);
        __EraseFirst();
    }
}

// The producer's answer to its own end is of no use to anybody.
void CTLManager::__CloseTL(const TL_PAIR& objPair) {
    boost::dynamic_pointer_cast<CTL>(objPair.first)->DoCloseTL();
    objPair.second->GCCloseLib();
}

void CTLManager::__Append(const TL_PAIR& objPair) {
    const CScopedLock objLock(m_csTLList);
    m_vecTL.push_back(objPair);
}

CTLManager::TL_PAIR CTLManager::__GetFirst() const {
    const CScopedLock objLock(m_csTLList);
    return m_vecTL.empty() ? TL_PAIR() : m_vecTL.front();
}

CTLManager::TL_PAIR CTLManager::__GetLast() const {
    const CScopedLock objLock(m_csTLList);
    return m_vecTL.empty() ? TL_PAIR() : m_vecTL.back();
}

void CTLManager::__EraseFirst() {
    const CScopedLock objLock(m_csTLList);
    m_vecTL.erase(m_vecTL.begin());
}

void CTLManager::__EraseLast() {
    const CScopedLock objLock(m_csTLList);
    m_vecTL.pop_back();
}

void CTLManager::__SetGenICamCacheEnvironment() {
    const std::string strPath = __GetGenICamCachePath();
    if (!strPath.empty()) {
        SetEnvironment(kCacheVariable, strPath);
    }
}

std::string CTLManager::__GetGenICamCachePath() {
    const std::string strSeparator = kPathSeparator;
    std::string strSubPath = "Orvane" + strSeparator + "xml" + strSeparator + "cache";
    if (!IsWin7OrLater()) {
        strSubPath.insert(0, "Documents" + strSeparator);
    }
    return GetEnvPath(kCacheRootVariable, strSubPath);
}

void CTLManager::__SetGenICamEnvironment(const char* pSource, const char* pTarget) {
    constexpr const char* kFunction = "CTLManager::__SetGenICamEnvironment";
    const std::optional<std::string> strValue = ReadEnvironment(pSource);
    if (!strValue) {
        throw CUnexpectedError(-1, "Failed to get environment", kFile, 424, kFunction);
    }
    if (!SetEnvironment(pTarget, *strValue)) {
        throw CUnexpectedError(-1, "Failed to set environment", kFile, 430, kFunction);
    }
}
