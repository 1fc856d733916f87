#include "TLClass/TLClassMain/UpdaterList.h"

#include <algorithm>
#include <chrono>

#include "TLClass/TLClassMain/IFUpdater.h"
#include "TLClass/TLClassMain/TLUpdater.h"
#include "support/Thread.h"

namespace {

constexpr std::uint32_t kPollMs = 1;

template <typename UPDATER, typename MODULE>
UPDATER_LIST CreateUpdaters(const std::vector<boost::shared_ptr<MODULE>>& vecModule) {
    UPDATER_LIST vecUpdater;
    for (const boost::shared_ptr<MODULE>& pModule : vecModule) {
        if (pModule) {
            vecUpdater.push_back(boost::shared_ptr<IUpdater>(new UPDATER(pModule)));
        }
    }
    return vecUpdater;
}

template <typename TEST>
bool WaitUntil(std::uint64_t nTimeoutMs, TEST fnTest) {
    using MILLISECONDS = std::chrono::duration<double, std::milli>;
    const auto tmStart = std::chrono::steady_clock::now();
    while (!fnTest()) {
        if (MILLISECONDS(std::chrono::steady_clock::now() - tmStart).count() > static_cast<double>(nTimeoutMs)) {
            return false;
        }
        CThread::Sleep(kPollMs);
    }
    return true;
}

}  // namespace

UPDATER_LIST CreateTLUpdaters(const std::vector<boost::shared_ptr<ITL>>& vecTL) {
    return CreateUpdaters<CTLUpdater>(vecTL);
}

UPDATER_LIST CreateIFUpdaters(const std::vector<boost::shared_ptr<IInterface>>& vecInterface) {
    return CreateUpdaters<CIFUpdater>(vecInterface);
}

void StartUpdaters(const UPDATER_LIST& vecUpdater, std::uint64_t nTimeoutMs, std::uint64_t nDelayMs) {
    const auto nSleepMs = static_cast<std::uint32_t>(std::min<std::uint64_t>(nDelayMs, UINT32_MAX));
    for (std::size_t i = 0; i < vecUpdater.size(); ++i) {
        if (vecUpdater[i]) {
            vecUpdater[i]->DoUpdate(nTimeoutMs);
        }
        if (nSleepMs != 0 && i + 1 < vecUpdater.size()) {
            CThread::Sleep(nSleepMs);
        }
    }
}

bool AreAllUpdatersFinished(const UPDATER_LIST& vecUpdater) {
    return std::all_of(vecUpdater.begin(), vecUpdater.end(),
                       [](const auto& pUpdater) { return !pUpdater || pUpdater->IsUpdateFinished(); });
}

bool IsAnyUpdaterFinished(const UPDATER_LIST& vecUpdater) {
    return std::any_of(vecUpdater.begin(), vecUpdater.end(),
                       [](const auto& pUpdater) { return pUpdater && pUpdater->IsUpdateFinished(); });
}

bool IsAnyUpdaterChanged(const UPDATER_LIST& vecUpdater) {
    return std::any_of(vecUpdater.begin(), vecUpdater.end(),
                       [](const auto& pUpdater) { return pUpdater && pUpdater->IsChanged(); });
}

bool WaitAllUpdatersFinished(const UPDATER_LIST& vecUpdater, std::uint64_t nTimeoutMs) {
    return WaitUntil(nTimeoutMs, [&] { return AreAllUpdatersFinished(vecUpdater); });
}

bool WaitAnyUpdaterFinished(const UPDATER_LIST& vecUpdater, std::uint64_t nTimeoutMs) {
    const bool bNone =
        std::none_of(vecUpdater.begin(), vecUpdater.end(), [](const auto& pUpdater) { return pUpdater; });
    return bNone || WaitUntil(nTimeoutMs, [&] { return IsAnyUpdaterFinished(vecUpdater); });
}

void StopUnfinishedUpdaters(const UPDATER_LIST& vecUpdater) {
    for (const boost::shared_ptr<IUpdater>& pUpdater : vecUpdater) {
        if (pUpdater && !pUpdater->IsUpdateFinished()) {
            pUpdater->DoStopUpdate();
        }
    }
}
