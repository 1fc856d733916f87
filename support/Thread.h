#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

// Priorities that Start knows. Every other value counts as the normal one.
inline constexpr int kPriorityNormal = 0;
inline constexpr int kPriorityTimeCritical = 15;

/// One thread at a time, whose body is a plain function with one argument.
///
/// Any thread may call. The destructor waits for the thread without limit, and nothing ever ends a thread from outside;
/// an exception that leaves the body ends the process.
class CThread {
public:
    using Entry = std::uint32_t (*)(void*);  // the result is read by nobody

    CThread() = default;
    /// As Join. On the object's own thread, where Join throws, it ends the process.
    ~CThread();  // NOLINT(bugprone-exception-escape)
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;

    /// Starts a thread, whose body finds this object already knowing it and its own priority already set.
    ///
    /// An earlier thread of the object is let go, running or not: it runs on to its end, but nobody can wait for it any
    /// more. So test IsRunning before. It is let go also when the new thread can't be made.
    /// @param pArg       handed to the body, not touched otherwise
    /// @param nPriority  kPriorityTimeCritical asks for the lowest real-time priority; a process that may not have it
    ///                   gets a normal thread, in silence
    /// @return false for a null entry, which changes nothing, and when the platform makes no thread.
    bool Start(void* pArg, Entry pEntry, int nPriority);

    /// @return true from Start until the body of the thread last started has returned.
    [[nodiscard]] bool IsRunning() const;

    /// @return true on the thread last started, whose body then runs.
    [[nodiscard]] bool IsCurrent() const;

    /// @return the kernel's number of the thread last started, also after its end; 0 before Start and after Join.
    [[nodiscard]] std::uint32_t GetThreadId() const;

    /// Waits without limit for the end of the thread and forgets it. Does nothing without a thread.
    /// @throws std::system_error  resource_deadlock_would_occur, when called on the very thread
    void Join();

    static void Sleep(std::uint32_t nMs);
    /// @return the kernel's number of the calling thread.
    static std::uint32_t GetCurrentThreadId();

private:
    struct THREAD_STATE;

    static std::shared_ptr<THREAD_STATE> __Create(void* pArg, Entry pEntry, int nPriority);
    std::shared_ptr<THREAD_STATE> __Replace(std::shared_ptr<THREAD_STATE> hThread);

    mutable std::mutex m_mtxFields;           // guards the two below
    std::shared_ptr<THREAD_STATE> m_hThread;  // shared with the thread; null when none was started, and after Join
    std::uint32_t m_nThreadId = 0;            // 0 as above
};
