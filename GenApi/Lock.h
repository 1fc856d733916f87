#pragma once

#include <mutex>

namespace GenApi_3_0 {

/// The one lock of a node map: recursive, held by every operation on its nodes. A caller may hold it over several
/// operations that belong together.
class CLock {
public:
    CLock() = default;
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    void Lock() { m_objMutex.lock(); }
    bool TryLock() { return m_objMutex.try_lock(); }
    void Unlock() { m_objMutex.unlock(); }

private:
    std::recursive_mutex m_objMutex;
};

/// Holds a lock for a scope.
class AutoLock {
public:
    explicit AutoLock(CLock& objLock) : m_objLock(objLock) { m_objLock.Lock(); }
    ~AutoLock() { m_objLock.Unlock(); }
    AutoLock(const AutoLock&) = delete;
    AutoLock& operator=(const AutoLock&) = delete;

private:
    CLock& m_objLock;
};

}  // namespace GenApi_3_0
