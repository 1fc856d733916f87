#include "TLClass/TLClassMain/ParallelUpdate.h"

#include "TLClass/TLClassMain/ITL.h"
#include "TLClass/TLClassMain/UpdaterList.h"

void UpdateTLsInParallel(const std::vector<boost::shared_ptr<ITL>>& vecTL, std::uint64_t nTimeoutMs, bool* pChanged) {
    *pChanged = false;
    const UPDATER_LIST vecUpdater = CreateTLUpdaters(vecTL);
    StartUpdaters(vecUpdater, nTimeoutMs, 0);
    WaitAllUpdatersFinished(vecUpdater, kNoLimitMs);
    *pChanged = IsAnyUpdaterChanged(vecUpdater);
}

void UpdateInterfacesInParallel(const std::vector<boost::shared_ptr<IInterface>>& vecInterface,
                                std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) {
    *pChanged = false;
    const UPDATER_LIST vecUpdater = CreateIFUpdaters(vecInterface);
    StartUpdaters(vecUpdater, nTimeoutMs, nDelayMs);
    WaitAnyUpdaterFinished(vecUpdater, kNoLimitMs);
    StopUnfinishedUpdaters(vecUpdater);
    WaitAllUpdatersFinished(vecUpdater, kNoLimitMs);
    *pChanged = IsAnyUpdaterChanged(vecUpdater);
}

std::vector<boost::shared_ptr<IInterface>> CollectInterfaces(const std::vector<boost::shared_ptr<ITL>>& vecTL) {
    std::vector<boost::shared_ptr<IInterface>> vecInterface;
    for (const boost::shared_ptr<ITL>& pTL : vecTL) {
        const auto vecOfTL = pTL->GetInterfaceList();
        vecInterface.insert(vecInterface.end(), vecOfTL.begin(), vecOfTL.end());
    }
    return vecInterface;
}
