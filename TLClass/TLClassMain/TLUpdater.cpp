#include "TLClass/TLClassMain/TLUpdater.h"

#include <utility>

#include "TLClass/TLClassMain/ITL.h"
#include "TLClass/TLClassMain/UpdaterThread.h"

CTLUpdater::CTLUpdater(boost::shared_ptr<ITL> pTL) : m_pTL(std::move(pTL)), m_pThread(std::make_unique<CThread>()) {}

CTLUpdater::~CTLUpdater() = default;

void CTLUpdater::DoUpdate(std::uint64_t nTimeoutMs) {
    StartUpdate(this, *m_pThread, &CTLUpdater::__OnThreadTLUpdate, nTimeoutMs, "CTLUpdater::DoUpdate");
}

bool CTLUpdater::IsUpdateFinished() {
    return !m_pThread->IsRunning();
}

std::uint32_t CTLUpdater::__OnThreadTLUpdate(void* pArgument) {
    return RunUpdate<CTLUpdater>(pArgument, "CTLUpdater::__OnThreadTLUpdate", "Null CTLUpdater pointer",
                                 [](CTLUpdater& objUpdater, std::uint64_t nTimeoutMs, bool* pChanged) {
                                     objUpdater.m_pTL->DoUpdateInterfaceList(nTimeoutMs, pChanged);
                                 });
}
