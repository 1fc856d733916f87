#include "producer/wire/ControlTurn.h"

namespace producer {

bool CControlTurn::Take(Clock::time_point objDeadline) {
    std::unique_lock objLock(m_mtxTurn);
    ++m_nWaiting;
    const bool bFree = m_objFree.wait_until(objLock, objDeadline, [this] { return !m_bTaken && !m_bHeartbeatWaits; });
    --m_nWaiting;
    m_bTaken = m_bTaken || bFree;
    return bFree;
}

bool CControlTurn::TakeFirst(Clock::time_point objDeadline) {
    std::unique_lock objLock(m_mtxTurn);
    ++m_nWaiting;
    m_bHeartbeatWaits = true;
    const bool bFree = m_objFree.wait_until(objLock, objDeadline, [this] { return !m_bTaken; });
    m_bHeartbeatWaits = false;
    --m_nWaiting;
    m_bTaken = true;  // by us, or still by whoever will wake the others
    return bFree;
}

void CControlTurn::Give() {
    const std::lock_guard objLock(m_mtxTurn);
    m_bTaken = false;
    if (m_nWaiting != 0) {
        m_objFree.notify_all();  // all: the heartbeat may be any of them
    }
}

}  // namespace producer
