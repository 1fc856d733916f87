#include "producer/wire/ControlTurn.h"

namespace producer {

void CControlTurn::Take() {
    std::unique_lock objLock(m_mtxTurn);
    ++m_nWaiting;
    m_objFree.wait(objLock, [this] { return !m_bTaken && m_nFirst == 0; });
    --m_nWaiting;
    m_bTaken = true;
}

bool CControlTurn::TakeFirst(Clock::time_point objDeadline) {
    std::unique_lock objLock(m_mtxTurn);
    ++m_nWaiting;
    ++m_nFirst;
    const bool bFree = m_objFree.wait_until(objLock, objDeadline, [this] { return !m_bTaken; });
    --m_nFirst;
    --m_nWaiting;
    m_bTaken = true;  // by us, or still by whoever will wake the others
    return bFree;
}

void CControlTurn::Give() {
    const std::lock_guard objLock(m_mtxTurn);
    m_bTaken = false;
    if (m_nWaiting != 0) {
        m_objFree.notify_all();  // all: who goes first may be any of them
    }
}

}  // namespace producer
