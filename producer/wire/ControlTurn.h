#pragma once

#include <condition_variable>
#include <mutex>

#include "producer/wire/Clock.h"

namespace producer {

/// Lets one question at a time onto a control channel. Those with a deadline, as the heartbeat, go before all others
/// who wait, so that a busy application doesn't starve them. Any thread may call.
class CControlTurn {
public:
    /// Held by a question from its construction to its destruction.
    class CHolder {
    public:
        explicit CHolder(CControlTurn& objTurn) : m_pTurn(&objTurn) { objTurn.Take(); }
        /// Goes first. Look with HasTurn whether it came in time.
        CHolder(CControlTurn& objTurn, Clock::time_point objDeadline)
            : m_pTurn(objTurn.TakeFirst(objDeadline) ? &objTurn : nullptr) {}
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
    void Take();
    bool TakeFirst(Clock::time_point objDeadline);
    void Give();

    std::mutex m_mtxTurn;  // guards all below
    std::condition_variable m_objFree;
    bool m_bTaken = false;
    int m_nWaiting = 0;
    int m_nFirst = 0;  // of these, those that go first
};

}  // namespace producer
