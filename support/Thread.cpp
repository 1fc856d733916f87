#include "support/Thread.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include <pthread.h>
#include <sched.h>
#include <unistd.h>

namespace {

/// The priority is best effort. A thread inherits a real-time policy from its maker, so the normal one is set too.
void SetPriority(pthread_t hThread, int nPriority) {
    sched_param objParameter{};
    int nPolicy = SCHED_OTHER;
    if (nPriority == kPriorityTimeCritical) {
        nPolicy = SCHED_RR;
        objParameter.sched_priority = sched_get_priority_min(SCHED_RR);
    }
    pthread_setschedparam(hThread, nPolicy, &objParameter);
}

}  // namespace

/// What the object and its thread share; the thread keeps it alive when the object lets go of it.
struct CThread::THREAD_STATE {
    void Run(void* pArg, Entry pEntry);
    void WaitUntilBorn();
    void LetGo();
    void WaitUntilFinished();
    bool IsCurrent();

    std::thread Handle;  // set before the body is let go, then detached or joined by whoever took it from the object

    std::mutex Lock;  // guards all below
    std::condition_variable Changed;
    std::uint32_t ThreadId = 0;  // 0 until the thread has come to life
    bool MayRun = false;
    std::atomic<bool> Finished{false};  // atomic for IsRunning, which looks without the lock

private:
    template <typename Change>
    void __Change(Change objChange) {
        const std::lock_guard objLock(Lock);
        objChange();
        Changed.notify_all();
    }
};

void CThread::THREAD_STATE::Run(void* pArg, Entry pEntry) {
    __Change([this] { ThreadId = GetCurrentThreadId(); });
    {
        std::unique_lock objLock(Lock);
        Changed.wait(objLock, [this] { return MayRun; });
    }
    // The body may also end by pthread_exit, which unwinds.
    struct FINISH {
        THREAD_STATE* State;
        ~FINISH() {
            State->__Change([this] { State->Finished = true; });
        }
    } objFinish{this};
    pEntry(pArg);
}

void CThread::THREAD_STATE::WaitUntilBorn() {
    std::unique_lock objLock(Lock);
    Changed.wait(objLock, [this] { return ThreadId != 0; });
}

void CThread::THREAD_STATE::LetGo() {
    __Change([this] { MayRun = true; });
}

void CThread::THREAD_STATE::WaitUntilFinished() {
    std::unique_lock objLock(Lock);
    Changed.wait(objLock, [this] { return Finished.load(); });
}

bool CThread::THREAD_STATE::IsCurrent() {
    // The kernel gives the number of a thread that has ended to others.
    return !Finished && ThreadId == GetCurrentThreadId();
}

CThread::~CThread() {  // NOLINT(bugprone-exception-escape): as its header tells
    Join();
}

bool CThread::Start(void* pArg, Entry pEntry, int nPriority) {
    if (pEntry == nullptr) {
        return false;
    }
    const auto hThread = __Create(pArg, pEntry, nPriority);
    const auto hOld = __Replace(hThread);
    if (hOld != nullptr) {
        hOld->Handle.detach();
    }
    if (hThread == nullptr) {
        return false;
    }
    hThread->LetGo();
    return true;
}

bool CThread::IsRunning() const {
    const std::lock_guard objLock(m_mtxFields);
    return m_hThread != nullptr && !m_hThread->Finished;
}

bool CThread::IsCurrent() const {
    const std::lock_guard objLock(m_mtxFields);
    return m_hThread != nullptr && m_hThread->IsCurrent();
}

std::uint32_t CThread::GetThreadId() const {
    const std::lock_guard objLock(m_mtxFields);
    return m_nThreadId;
}

void CThread::Join() {
    std::shared_ptr<THREAD_STATE> hThread;
    {
        const std::lock_guard objLock(m_mtxFields);
        hThread = m_hThread;
    }
    if (hThread == nullptr) {
        return;
    }
    if (hThread->IsCurrent()) {
        throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur),
                                "a thread can't wait for its own end");
    }
    hThread->WaitUntilFinished();
    {
        // Meanwhile another Join may have taken the thread, or a Start let it go.
        const std::lock_guard objLock(m_mtxFields);
        if (m_hThread != hThread) {
            return;
        }
        m_hThread.reset();
        m_nThreadId = 0;
    }
    hThread->Handle.join();
}

void CThread::Sleep(std::uint32_t nMs) {
    std::this_thread::sleep_for(std::chrono::milliseconds(nMs));
}

std::uint32_t CThread::GetCurrentThreadId() {
    return static_cast<std::uint32_t>(gettid());
}

/// @return a thread at its priority that waits to be let go; null when the platform makes none.
std::shared_ptr<CThread::THREAD_STATE> CThread::__Create(void* pArg, Entry pEntry, int nPriority) try {
    auto hThread = std::make_shared<THREAD_STATE>();
    hThread->Handle = std::thread([hThread, pArg, pEntry] { hThread->Run(pArg, pEntry); });
    hThread->WaitUntilBorn();
    SetPriority(hThread->Handle.native_handle(), nPriority);
    return hThread;
} catch (const std::system_error&) {
    return nullptr;
} catch (const std::bad_alloc&) {
    return nullptr;
}

/// @return the thread that the object had.
std::shared_ptr<CThread::THREAD_STATE> CThread::__Replace(std::shared_ptr<THREAD_STATE> hThread) {
    const std::lock_guard objLock(m_mtxFields);
    m_nThreadId = hThread == nullptr ? 0 : hThread->ThreadId;
    return std::exchange(m_hThread, std::move(hThread));
}
