#pragma once

#include <mutex>

/// A lock that the thread that holds it may take again; it is free when each Lock has had its Unlock.
///
/// Any thread may call, Unlock only the one that holds it. One that guards state of the whole process must outlive
/// every thread, also those that still run while the process exits, so it is made once with new behind a function-local
/// static reference and never destroyed.
class CCriticalSection {
public:
    CCriticalSection() = default;
    ~CCriticalSection() = default;
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    void Lock() { m_objMutex.lock(); }
    void Unlock() { m_objMutex.unlock(); }
    /// @return true when the section was taken, which its holder always achieves.
    [[nodiscard]] bool TryLock() { return m_objMutex.try_lock(); }

private:
    std::recursive_mutex m_objMutex;
};
