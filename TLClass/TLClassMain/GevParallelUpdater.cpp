#include "TLClass/TLClassMain/GevParallelUpdater.h"

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassMain/GevInterface.h"
#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/ParallelUpdate.h"

CGevParallelUpdater::CGevParallelUpdater(std::vector<boost::shared_ptr<CGevTL>> vecTL)
    : m_vecTL(vecTL.begin(), vecTL.end()) {}

void CGevParallelUpdater::DoUpdateTLs(std::uint64_t nTimeoutMs, bool* pChanged) {
    UpdateTLsInParallel(m_vecTL, nTimeoutMs, pChanged);
}

void CGevParallelUpdater::DoUpdateInterfaces(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) {
    UpdateInterfacesInParallel(__UpdateAddressless(), nTimeoutMs, nDelayMs, pChanged);
}

std::vector<boost::shared_ptr<IInterface>> CGevParallelUpdater::GetInterfaceList() const {
    return CollectInterfaces(m_vecTL);
}

/// Lets each interface without an address clear its list on this thread, with no time to look for anything.
/// @return the others
std::vector<boost::shared_ptr<IInterface>> CGevParallelUpdater::__UpdateAddressless() const {
    std::vector<boost::shared_ptr<IInterface>> vecWithAddress;
    for (const boost::shared_ptr<IInterface>& pInterface : GetInterfaceList()) {
        const auto pGevInterface = boost::dynamic_pointer_cast<CGevInterface>(pInterface);
        if (!pGevInterface) {
            continue;
        }
        if (pGevInterface->GetGevIfInfo().IPAddress != 0) {
            vecWithAddress.push_back(pInterface);
            continue;
        }
        bool bChanged = false;  // isn't meant to count
        pGevInterface->DoUpdateDeviceList(0, &bChanged);
    }
    return vecWithAddress;
}
