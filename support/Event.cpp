#include "support/Event.h"

#include <chrono>

#include "support/ScopedLock.h"

void CEvent::Signal() {
    const CScopedLock objLock(m_csCount);
    ++m_nSignalCount;
    __Set();
}

bool CEvent::Wait(std::uint32_t nTimeoutMs) {
    {
        const CScopedLock objLock(m_csCount);
        if (m_nSignalCount != 0) {
            --m_nSignalCount;
        }
    }
    return __Take(nTimeoutMs);
}

void CEvent::Reset() {
    const CScopedLock objLock(m_csCount);
    while (m_nSignalCount != 0) {
        __Take(1);
        --m_nSignalCount;
    }
}

std::uint32_t CEvent::GetSignalCount() const {
    const CScopedLock objLock(m_csCount);
    return m_nSignalCount;
}

void CEvent::__Set() {
    const std::lock_guard objLock(m_mtxSet);
    m_bSet = true;
    m_objSet.notify_one();
}

bool CEvent::__Take(std::uint32_t nTimeoutMs) {
    std::unique_lock objLock(m_mtxSet);
    const auto IsSet = [this] { return m_bSet; };
    if (nTimeoutMs == kInfinite) {
        m_objSet.wait(objLock, IsSet);
    } else if (nTimeoutMs == 0) {  // a look, which event threads take once for each frame, needs no timed wait
        if (!m_bSet) {
            return false;
        }
    } else if (!m_objSet.wait_for(objLock, std::chrono::milliseconds(nTimeoutMs), IsSet)) {
        return false;
    }
    m_bSet = false;
    return true;
}
