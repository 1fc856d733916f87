#include "TLClass/TLClassMain/GenericParallelUpdater.h"

#include <utility>

#include "TLClass/TLClassMain/ParallelUpdate.h"

CGenericParallelUpdater::CGenericParallelUpdater(std::vector<boost::shared_ptr<ITL>> vecTL)
    : m_vecTL(std::move(vecTL)) {}

void CGenericParallelUpdater::DoUpdateTLs(std::uint64_t nTimeoutMs, bool* pChanged) {
    UpdateTLsInParallel(m_vecTL, nTimeoutMs, pChanged);
}

void CGenericParallelUpdater::DoUpdateInterfaces(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) {
    UpdateInterfacesInParallel(GetInterfaceList(), nTimeoutMs, nDelayMs, pChanged);
}

std::vector<boost::shared_ptr<IInterface>> CGenericParallelUpdater::GetInterfaceList() const {
    return CollectInterfaces(m_vecTL);
}
