#include "app/EnumerationService.h"

#include <exception>
#include <new>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/IInterface.h"
#include "TLClass/TLClassMain/ITL.h"
#include "TLClass/TLClassMain/ITLManager.h"
#include "support/ScopedLock.h"
#include "support/Text.h"

namespace {

// The producers of this program.
constexpr char kTLFileNames[] = "ZrGVTL.cti";
constexpr char kTLFileNameSeparator[] = ";";

// Between the starts of two adapters.
constexpr std::uint64_t kUpdateDelayMs = 1;

/// A program without a producer is still good for the recovery, so nobody is told. What node maps throw is among what
/// is caught.
template <class TStep>
void SwallowFailure(const TStep& funStep) {
    try {
        funStep();
    } catch (const std::exception&) {
    }
}

template <class T>
void Append(std::vector<CGcObjectPointer>& vecObject, const std::vector<T>& vecMore) {
    vecObject.insert(vecObject.end(), vecMore.begin(), vecMore.end());
}

void CloseDevice(const boost::shared_ptr<IDevice>& pDevice) {
    if (!pDevice || !pDevice->IsOpened()) {
        return;
    }
    for (const boost::shared_ptr<IDataStream>& pDataStream : pDevice->GetDataStreamList()) {
        pDataStream->DoCloseDataStream();
    }
    pDevice->DoCloseDevice();
}

}  // namespace

CEnumerationService* CEnumerationService::GetInstance() {
    static std::atomic<CEnumerationService*> s_pInstance{nullptr};
    static CCriticalSection& s_csInstance = *new CCriticalSection;
    CEnumerationService* pInstance = s_pInstance.load(std::memory_order_acquire);
    if (pInstance == nullptr) {
        const CScopedLock objLock(s_csInstance);
        pInstance = s_pInstance.load(std::memory_order_relaxed);
        if (pInstance == nullptr) {
            pInstance = new (std::nothrow) CEnumerationService(kTLFileNames);
            s_pInstance.store(pInstance, std::memory_order_release);
        }
    }
    return pInstance;
}

CEnumerationService::CEnumerationService(const std::string& strTLFileNames)
    : m_bInitialized(false), m_vecTLFileNames(Split(strTLFileNames, kTLFileNameSeparator)) {}

void CEnumerationService::Init() {
    // Set before anything else: an Init that fails isn't tried again.
    if (m_bInitialized.exchange(true)) {
        return;
    }
    const CScopedLock objLock(m_csLock);
    if (m_vecTLFileNames.empty()) {
        return;
    }
    SwallowFailure([this] { GetTLManager()->DoInit(m_vecTLFileNames); });
}

void CEnumerationService::Uninit() {
    if (!m_bInitialized.exchange(false)) {
        return;
    }
    const CScopedLock objLock(m_csLock);
    SwallowFailure([this] {
        __CloseAllDevices();
        GetTLManager()->DoUninit();
    });
}

void CEnumerationService::__CloseAllDevices() const {
    for (const CGcObjectPointer& pObject : GetAllObjects()) {
        CloseDevice(boost::dynamic_pointer_cast<IDevice>(pObject));
    }
}

std::uint32_t CEnumerationService::UpdateDeviceList(std::uint32_t nTimeoutMs) {
    CGevUpdateAgency objAgency(GetGevTLs());
    bool bChanged = false;
    objAgency.DoLimitedBroadcastUpdate(nTimeoutMs, kUpdateDelayMs, &bChanged);
    return 0;
}

std::vector<boost::shared_ptr<CGevTL>> CEnumerationService::GetGevTLs() const {
    std::vector<boost::shared_ptr<CGevTL>> vecGevTL;
    for (const boost::shared_ptr<ITL>& pTL : GetAllTLs()) {
        if (const auto pGevTL = boost::dynamic_pointer_cast<CGevTL>(pTL)) {
            vecGevTL.push_back(pGevTL);
        }
    }
    return vecGevTL;
}

std::vector<boost::shared_ptr<ITL>> CEnumerationService::GetAllTLs() const {
    return GetTLManager()->GetTLList();
}

std::vector<boost::shared_ptr<IInterface>> CEnumerationService::GetInterfaces(const boost::shared_ptr<ITL>& pTL) const {
    return pTL ? pTL->GetInterfaceList() : std::vector<boost::shared_ptr<IInterface>>();
}

std::vector<boost::shared_ptr<IDevice>> CEnumerationService::GetDevices(
    const boost::shared_ptr<IInterface>& pInterface) const {
    return pInterface ? pInterface->GetDeviceList() : std::vector<boost::shared_ptr<IDevice>>();
}

std::vector<CGcObjectPointer> CEnumerationService::GetNamedDevices(
    const boost::shared_ptr<IInterface>& pInterface) const {
    std::vector<CGcObjectPointer> vecNamed;
    for (const boost::shared_ptr<IDevice>& pDevice : GetDevices(pInterface)) {
        const DEV_MODULE_INFO objInformation = pDevice->GetDeviceInformation();
        if (!objInformation.Vendor.empty() || !objInformation.Model.empty()) {
            vecNamed.push_back(pDevice);
        }
    }
    return vecNamed;
}

std::vector<CGcObjectPointer> CEnumerationService::GetObjectsOfTL(const boost::shared_ptr<ITL>& pTL) const {
    const std::vector<boost::shared_ptr<IInterface>> vecInterface = GetInterfaces(pTL);
    std::vector<CGcObjectPointer> vecObject(vecInterface.begin(), vecInterface.end());
    for (const boost::shared_ptr<IInterface>& pInterface : vecInterface) {
        Append(vecObject, GetNamedDevices(pInterface));
    }
    return vecObject;
}

std::vector<CGcObjectPointer> CEnumerationService::GetAllObjects() const {
    std::vector<CGcObjectPointer> vecObject;
    std::vector<CGcObjectPointer> vecDevice;
    for (const boost::shared_ptr<ITL>& pTL : GetAllTLs()) {
        const std::vector<boost::shared_ptr<IInterface>> vecInterface = GetInterfaces(pTL);
        Append(vecObject, vecInterface);
        for (const boost::shared_ptr<IInterface>& pInterface : vecInterface) {
            Append(vecDevice, GetNamedDevices(pInterface));
        }
    }
    Append(vecObject, vecDevice);
    return vecObject;
}
