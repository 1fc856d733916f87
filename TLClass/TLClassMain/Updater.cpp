#include "TLClass/TLClassMain/Updater.h"

#include "support/ScopedLock.h"

IUpdater::IUpdater()
    : m_pcsTimeout(std::make_unique<CCriticalSection>()), m_pcsChanged(std::make_unique<CCriticalSection>()) {}

IUpdater::~IUpdater() = default;

std::uint64_t IUpdater::GetTimeout() const {
    const CScopedLock objLock(*m_pcsTimeout);
    return m_nTimeoutMs;
}

void IUpdater::SetTimeout(std::uint64_t nTimeoutMs) {
    const CScopedLock objLock(*m_pcsTimeout);
    m_nTimeoutMs = nTimeoutMs;
}

bool IUpdater::IsChanged() const {
    const CScopedLock objLock(*m_pcsChanged);
    return m_bChanged;
}

void IUpdater::SetChanged(bool bChanged) {
    const CScopedLock objLock(*m_pcsChanged);
    m_bChanged = bChanged;
}
