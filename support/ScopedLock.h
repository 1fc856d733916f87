#pragma once

#include "support/CriticalSection.h"

/// Holds a critical section from its construction to its destruction. Lives on the stack of one thread.
class CScopedLock {
public:
    explicit CScopedLock(CCriticalSection& csLock) : m_pcsLock(&csLock) { m_pcsLock->Lock(); }
    ~CScopedLock() { m_pcsLock->Unlock(); }
    CScopedLock(const CScopedLock&) = delete;
    CScopedLock& operator=(const CScopedLock&) = delete;

private:
    CCriticalSection* m_pcsLock;
};
