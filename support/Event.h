#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "support/CriticalSection.h"

/// A time-out that never comes.
inline constexpr std::uint32_t kInfinite = 0xFFFFFFFF;

/// An event that lets one waiter through for a signal, with a count of the signals beside it.
///
/// The event itself holds one signal at most: signals that come before the first is taken add to the count alone, which
/// so may run ahead. Any thread may call. It must outlive every call, a Signal that has just released its waiter
/// included.
class CEvent {
public:
    CEvent() = default;
    ~CEvent() = default;
    CEvent(const CEvent&) = delete;
    CEvent& operator=(const CEvent&) = delete;

    /// Adds 1 to the count and sets the event. Waits for a Reset that is under way.
    void Signal();

    /// Takes 1 from the count if there is any, then waits for the event and clears it. A wait in vain has its 1 taken
    /// nevertheless.
    /// @param nTimeoutMs  0 only looks; kInfinite waits without limit
    /// @return true when the event was set in time.
    bool Wait(std::uint32_t nTimeoutMs);

    /// Forgets all signals: the count is 0 and the event cleared. Takes up to a millisecond for each signal counted.
    void Reset();

    /// The signals given and not yet taken off the count.
    [[nodiscard]] std::uint32_t GetSignalCount() const;

private:
    void __Set();
    bool __Take(std::uint32_t nTimeoutMs);

    mutable CCriticalSection
        m_csCount;                     // guards m_nSignalCount; held through the waits of Reset; taken before m_mtxSet
    std::uint32_t m_nSignalCount = 0;  // signals given and not yet taken

    std::mutex m_mtxSet;  // guards m_bSet
    std::condition_variable m_objSet;
    bool m_bSet = false;  // the event itself; a wait that succeeds clears it
};
