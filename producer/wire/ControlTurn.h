#pragma once

#include <condition_variable>
#include <mutex>

#include "producer/wire/Clock.h"

namespace producer {

/// Lets one question at a time onto a control channel. The heartbeat goes before all others who wait, so that a busy
/// application doesn't starve it. Any thread may call.
class CControlTurn {
public:
    /// Held by a question from its construction to its destruction.
    class CHolder {
    public:
        /// Waits for its turn until the deadline. Look with HasTurn whether it came in time.
        CHolder(CControlTurn& objTurn, bool bHeartbeat, Clock::time_point objDeadline)
            : m_pTurn((bHeartbeat ? objTurn.TakeFirst(objDeadline) : objTurn.Take(objDeadline)) ? &objTurn : nullptr) {}
        ~CHolder() {
            if (m_pTurn != nullptr) {
                m_pTurn->Give();
            }
        }
        CHolder(const CHolder&) = delete;
        CHolder& operator=(const CHolder&) = delete;

        [[nodiscard]] bool HasTurn() const noexcept { return m_pTurn != nullptr; }

    private:
        CControlTurn* m_pTurn;
    };

private:
    bool Take(Clock::time_point objDeadline);
    bool TakeFirst(Clock::time_point objDeadline);
    void Give();

    std::mutex m_mtxTurn;  // guards all below
    std::condition_variable m_objFree;
    bool m_bTaken = false;
    bool m_bHeartbeatWaits = false;
    int m_nWaiting = 0;
};

}  // namespace producer
