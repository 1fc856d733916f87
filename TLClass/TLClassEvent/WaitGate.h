#pragma once

#include <atomic>
#include <cstdint>

#include "TLClass/TLClassMain/UnCopyable.h"
#include "support/Thread.h"

/// Counts the calls that stand in a producer's wait on threads that nobody joins, so that whoever takes away what they
/// use can let them out first. Any thread may enter; closing and opening is for one thread at a time.
class CWaitGate : public CUnCopyable {
public:
    /// One call's way through the gate.
    class CPass : public CUnCopyable {
    public:
        explicit CPass(CWaitGate& objGate) : m_objGate(objGate), m_bInside(!(objGate.m_nState++ & kClosed)) {}
        ~CPass() { --m_objGate.m_nState; }

        /// @return false while the gate is closed
        bool IsInside() const { return m_bInside; }

    private:
        CWaitGate& m_objGate;
        const bool m_bInside;
    };

    /// Lets nobody in any more, and returns when nobody is inside.
    /// @param fnWake  ends a wait; called until all have left, as one that comes before its wait may be lost
    template <typename WAKE>
    void CloseAndEmpty(WAKE fnWake) {
        m_nState |= kClosed;
        for (std::uint32_t nMs = 0; (m_nState & ~kClosed) != 0; ++nMs) {
            if (nMs % kWakeEachMs == 0) {
                fnWake();
            }
            CThread::Sleep(1);
        }
    }

    void Open() { m_nState &= ~kClosed; }

private:
    static constexpr std::uint32_t kClosed = 1U << 31U;
    static constexpr std::uint32_t kWakeEachMs = 10;

    std::atomic<std::uint32_t> m_nState{0};  // how many are inside or turned away just now, and kClosed
};
