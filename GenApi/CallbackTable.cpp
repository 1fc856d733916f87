#include "GenApi/CallbackTable.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace GenApi_3_0 {

class CRegisteredCallback {
public:
    CRegisteredCallback(CallbackHandleType hCallback, INode* pNode, std::unique_ptr<CNodeCallback> pCallback)
        : m_hCallback(hCallback), m_pNode(pNode), m_pCallback(std::move(pCallback)) {}

    const CallbackHandleType m_hCallback;
    INode* const m_pNode;
    const std::unique_ptr<CNodeCallback> m_pCallback;

    std::mutex m_csRun;  // guards the members below
    std::condition_variable m_objIdle;
    std::vector<std::thread::id> m_vecRunner;
    bool m_bRetired = false;
};

namespace {

struct HANDLE_REGISTRY {
    std::mutex Lock;  // guards the members below
    CallbackHandleType Next = 1;
    std::unordered_map<CallbackHandleType, std::weak_ptr<CRegisteredCallback>> Living;
};

// Never destroyed: a node map may be the property of a static object.
HANDLE_REGISTRY& Registry() {
    static auto* const s_pRegistry = new HANDLE_REGISTRY;
    return *s_pRegistry;
}

CallbackHandleType TakeHandle() {
    HANDLE_REGISTRY& objRegistry = Registry();
    const std::lock_guard objLock(objRegistry.Lock);
    return objRegistry.Next++;
}

void Enlist(const CCallbackTable::Pin& pCallback) {
    HANDLE_REGISTRY& objRegistry = Registry();
    const std::lock_guard objLock(objRegistry.Lock);
    objRegistry.Living.emplace(pCallback->m_hCallback, pCallback);
}

void Delist(CallbackHandleType hCallback) {
    HANDLE_REGISTRY& objRegistry = Registry();
    const std::lock_guard objLock(objRegistry.Lock);
    objRegistry.Living.erase(hCallback);
}

/// Which thread waits for the end of which callback.
struct WAIT_REGISTRY {
    std::mutex Lock;  // guards the member below; taken before the lock of a callback
    std::unordered_map<std::thread::id, CRegisteredCallback*> Waiting;
};

WAIT_REGISTRY& Waits() {
    static auto* const s_pWaits = new WAIT_REGISTRY;
    return *s_pWaits;
}

/// Whether the callback runs on threads that wait, each for the next one's callback, for one that this thread runs.
/// With the lock of the waits held.
bool LeadsBackToThisThread(CRegisteredCallback& objCallback) {
    std::vector<CRegisteredCallback*> vecSeen{&objCallback};
    for (std::size_t i = 0; i < vecSeen.size(); ++i) {
        const std::lock_guard objLock(vecSeen[i]->m_csRun);
        for (const std::thread::id nRunner : vecSeen[i]->m_vecRunner) {
            if (i > 0 && nRunner == std::this_thread::get_id()) {
                return true;
            }
            const auto it = Waits().Waiting.find(nRunner);
            if (it != Waits().Waiting.end() && std::find(vecSeen.begin(), vecSeen.end(), it->second) == vecSeen.end()) {
                vecSeen.push_back(it->second);
            }
        }
    }
    return false;
}

/// Notes what this thread waits for, unless that would close a circle of threads that wait for each other.
class CWaitNote {
public:
    explicit CWaitNote(CRegisteredCallback& objCallback) {
        const std::lock_guard objLock(Waits().Lock);
        m_bMayWait = !LeadsBackToThisThread(objCallback);
        if (m_bMayWait) {
            Waits().Waiting.emplace(std::this_thread::get_id(), &objCallback);
        }
    }
    ~CWaitNote() {
        if (m_bMayWait) {
            const std::lock_guard objLock(Waits().Lock);
            Waits().Waiting.erase(std::this_thread::get_id());
        }
    }
    CWaitNote(const CWaitNote&) = delete;
    CWaitNote& operator=(const CWaitNote&) = delete;

    bool MayWait() const { return m_bMayWait; }

private:
    bool m_bMayWait = false;
};

/// Notes for Retire that this thread runs the callback.
class CRunnerNote {
public:
    explicit CRunnerNote(CRegisteredCallback& objCallback) : m_objCallback(objCallback) {
        const std::lock_guard objLock(m_objCallback.m_csRun);
        m_bMayRun = !m_objCallback.m_bRetired;
        if (m_bMayRun) {
            m_objCallback.m_vecRunner.push_back(std::this_thread::get_id());
        }
    }
    ~CRunnerNote() {
        if (!m_bMayRun) {
            return;
        }
        const std::lock_guard objLock(m_objCallback.m_csRun);
        auto& vecRunner = m_objCallback.m_vecRunner;
        vecRunner.erase(std::find(vecRunner.begin(), vecRunner.end(), std::this_thread::get_id()));
        m_objCallback.m_objIdle.notify_all();
    }
    CRunnerNote(const CRunnerNote&) = delete;
    CRunnerNote& operator=(const CRunnerNote&) = delete;

    bool MayRun() const { return m_bMayRun; }

private:
    CRegisteredCallback& m_objCallback;
    bool m_bMayRun = false;
};

}  // namespace

CCallbackTable::~CCallbackTable() {
    for (const auto& [nNode, vecCallback] : m_mapCallback) {
        for (const Pin& pCallback : vecCallback) {
            Delist(pCallback->m_hCallback);
        }
    }
}

CallbackHandleType CCallbackTable::Add(std::uint32_t nNode, INode* pNode, std::unique_ptr<CNodeCallback> pCallback) {
    const CallbackHandleType hCallback = TakeHandle();
    auto pEntry = std::make_shared<CRegisteredCallback>(hCallback, pNode, std::move(pCallback));
    m_mapCallback[nNode].push_back(pEntry);
    Enlist(pEntry);
    return hCallback;
}

bool CCallbackTable::Remove(std::uint32_t nNode, CallbackHandleType hCallback) {
    const auto it = m_mapCallback.find(nNode);
    if (it == m_mapCallback.end()) {
        return false;
    }
    std::erase_if(it->second, [hCallback](const Pin& p) { return p->m_hCallback == hCallback; });
    Delist(hCallback);
    if (!it->second.empty()) {
        return true;
    }
    m_mapCallback.erase(it);
    return false;
}

bool CCallbackTable::Has(std::uint32_t nNode, CallbackHandleType hCallback) const {
    const auto it = m_mapCallback.find(nNode);
    return it != m_mapCallback.end() && std::any_of(it->second.begin(), it->second.end(),
                                                    [hCallback](const Pin& p) { return p->m_hCallback == hCallback; });
}

void CCallbackTable::Collect(std::uint32_t nNode, ECallbackType eType, std::vector<Pin>& vecPin) const {
    const auto it = m_mapCallback.find(nNode);
    if (it == m_mapCallback.end()) {
        return;
    }
    for (const Pin& pCallback : it->second) {
        if (pCallback->m_pCallback->GetCallbackType() == eType) {
            vecPin.push_back(pCallback);
        }
    }
}

void CCallbackTable::Run(CRegisteredCallback& objCallback) {
    const CRunnerNote objNote(objCallback);
    if (objNote.MayRun()) {
        (*objCallback.m_pCallback)(objCallback.m_pNode);
    }
}

void CCallbackTable::Retire(CRegisteredCallback& objCallback) {
    const auto OnlyThisThread = [&objCallback] {
        return std::all_of(objCallback.m_vecRunner.begin(), objCallback.m_vecRunner.end(),
                           [](std::thread::id nThread) { return nThread == std::this_thread::get_id(); });
    };
    std::unique_lock objLock(objCallback.m_csRun);
    objCallback.m_bRetired = true;
    if (OnlyThisThread()) {
        return;
    }
    objLock.unlock();
    if (const CWaitNote objNote(objCallback); objNote.MayWait()) {
        objLock.lock();
        objCallback.m_objIdle.wait(objLock, OnlyThisThread);
        objLock.unlock();  // before the note's own lock
    }
}

CCallbackTable::Pin CCallbackTable::Find(CallbackHandleType hCallback) {
    HANDLE_REGISTRY& objRegistry = Registry();
    const std::lock_guard objLock(objRegistry.Lock);
    const auto it = objRegistry.Living.find(hCallback);
    return it == objRegistry.Living.end() ? nullptr : it->second.lock();
}

INode* CCallbackTable::NodeOf(const CRegisteredCallback& objCallback) {
    return objCallback.m_pNode;
}

bool Deregister(CallbackHandleType hCallback) {
    const CCallbackTable::Pin pCallback = CCallbackTable::Find(hCallback);
    return pCallback != nullptr && CCallbackTable::NodeOf(*pCallback)->DeregisterCallback(hCallback);
}

}  // namespace GenApi_3_0
