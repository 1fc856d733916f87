#include "TLClass/TLClassMain/GevUpdateAgency.h"

#include <utility>

#include "TLClass/TLClassMain/GevParallelUpdater.h"
#include "TLClass/TLClassMain/IInterface.h"
#include "support/CriticalSection.h"
#include "support/Log.h"
#include "support/ScopedLock.h"

namespace {

constexpr const char* kModeFeature = "DeviceUpdateListMode";
constexpr const char* kLimitedBroadcast = "LimitedBroadcast";
constexpr const char* kDirectedSubnetBroadcast = "DirectedSubnetBroadcast";

CCriticalSection& s_csGevUpdate() {
    static CCriticalSection& csUpdate = *new CCriticalSection;
    return csUpdate;
}

void SetModeOfInterface(const IInterface& objInterface, const std::string& strMode) {
    IFeatureControl* pFeatureControl = objInterface.GetFeatureControl();
    if (pFeatureControl == nullptr) {
        CLog::GetInstance()->Write("Cannot find the feature control of the interface: " +
                                   objInterface.GetInterfaceInformation().DisplayName);
        return;
    }
    if (!pFeatureControl->IsFeatureExist(kModeFeature)) {
        CLog::GetInstance()->Write(std::string("Cannot find the feature \"") + kModeFeature +
                                   "\" from the interface \"" + objInterface.GetInterfaceInformation().DisplayName +
                                   "\"");
        return;
    }
    pFeatureControl->DoSetEnum(kModeFeature, pFeatureControl->DoGetEnumEntryValue(kModeFeature, strMode));
}

}  // namespace

CGevUpdateAgency::CGevUpdateAgency(std::vector<boost::shared_ptr<CGevTL>> vecTL)
    : m_pParallelUpdater(std::make_unique<CGevParallelUpdater>(std::move(vecTL))) {}

CGevUpdateAgency::~CGevUpdateAgency() = default;

void CGevUpdateAgency::DoUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) {
    __DoUpdate(kDirectedSubnetBroadcast, nTimeoutMs, nDelayMs, pChanged);
}

void CGevUpdateAgency::DoLimitedBroadcastUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) {
    __DoUpdate(kLimitedBroadcast, nTimeoutMs, nDelayMs, pChanged);
}

void CGevUpdateAgency::DoDirectedSubnetBroadcastUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs,
                                                       bool* pChanged) {
    __DoUpdate(kDirectedSubnetBroadcast, nTimeoutMs, nDelayMs, pChanged);
}

void CGevUpdateAgency::__DoUpdate(const std::string& strMode, std::uint64_t nTimeoutMs, std::uint64_t nDelayMs,
                                  bool* pChanged) {
    const CScopedLock objLock(s_csGevUpdate());
    // The lists of interfaces are taken as they are: time to wait is for the cameras alone.
    bool bTLsChanged = false;
    m_pParallelUpdater->DoUpdateTLs(0, &bTLsChanged);
    for (const boost::shared_ptr<IInterface>& pInterface : m_pParallelUpdater->GetInterfaceList()) {
        SetModeOfInterface(*pInterface, strMode);
    }
    bool bInterfacesChanged = false;
    m_pParallelUpdater->DoUpdateInterfaces(nTimeoutMs, nDelayMs, &bInterfacesChanged);
    *pChanged = bTLsChanged || bInterfacesChanged;
}
