#include "TLClass/TLClassMain/GenericUpdateAgency.h"

#include <utility>

#include "TLClass/TLClassMain/GenericParallelUpdater.h"
#include "support/CriticalSection.h"
#include "support/ScopedLock.h"

namespace {

CCriticalSection& s_csGenericUpdate() {
    static CCriticalSection& csUpdate = *new CCriticalSection;
    return csUpdate;
}

}  // namespace

CGenericUpdateAgency::CGenericUpdateAgency(std::vector<boost::shared_ptr<ITL>> vecTL)
    : m_pParallelUpdater(std::make_unique<CGenericParallelUpdater>(std::move(vecTL))) {}

CGenericUpdateAgency::~CGenericUpdateAgency() = default;

void CGenericUpdateAgency::DoUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) {
    const CScopedLock objLock(s_csGenericUpdate());
    bool bTLsChanged = false;
    m_pParallelUpdater->DoUpdateTLs(0, &bTLsChanged);
    bool bInterfacesChanged = false;
    m_pParallelUpdater->DoUpdateInterfaces(nTimeoutMs, nDelayMs, &bInterfacesChanged);
    *pChanged = bTLsChanged || bInterfacesChanged;
}
