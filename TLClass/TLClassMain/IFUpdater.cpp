#include "TLClass/TLClassMain/IFUpdater.h"

#include <utility>

#include "TLClass/TLClassMain/IInterface.h"
#include "TLClass/TLClassMain/UpdaterThread.h"

namespace {

constexpr const char* kStopFeature = "DeviceStopUpdateList";

}  // namespace

CIFUpdater::CIFUpdater(boost::shared_ptr<IInterface> pInterface)
    : m_pInterface(std::move(pInterface)), m_pThread(std::make_unique<CThread>()) {}

CIFUpdater::~CIFUpdater() = default;

void CIFUpdater::DoUpdate(std::uint64_t nTimeoutMs) {
    StartUpdate(this, *m_pThread, &CIFUpdater::__OnThreadInterfaceUpdate, nTimeoutMs, "CIFUpdater::DoUpdate");
}

bool CIFUpdater::IsUpdateFinished() {
    return !m_pThread->IsRunning();
}

void CIFUpdater::DoStopUpdate() {
    IFeatureControl* pFeatureControl = m_pInterface->GetFeatureControl();
    if (pFeatureControl == nullptr) {
        LogUpdater(__LINE__, "CIFUpdater::DoStopUpdate", "Null IFeatureControl pointer");
        return;
    }
    if (pFeatureControl->IsFeatureExist(kStopFeature)) {
        pFeatureControl->DoSendCommand(kStopFeature);
    }
}

std::uint32_t CIFUpdater::__OnThreadInterfaceUpdate(void* pArgument) {
    return RunUpdate<CIFUpdater>(pArgument, "CIFUpdater::__OnThreadInterfaceUpdate", "Null CIFUpdater pointer",
                                 [](CIFUpdater& objUpdater, std::uint64_t nTimeoutMs, bool* pChanged) {
                                     objUpdater.m_pInterface->DoUpdateDeviceList(nTimeoutMs, pChanged);
                                 });
}
