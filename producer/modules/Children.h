#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "producer/ProducerError.h"

namespace producer {

/// The open modules below another one, each under a key that may be open once.
///
/// Owned by the parent. Any thread may call; no lock is held while a child opens or closes, which may take as long as a
/// network does.
template <class TChild>
class CChildren {
public:
    /// Opens a child and gives it its handle.
    /// @param funOpen  makes the module; what it throws passes on
    /// @throws CProducerError  GC_ERR_RESOURCE_IN_USE while the key is open, opening or closing; GC_ERR_INVALID_HANDLE
    ///                         when the parent was closed meanwhile
    template <class TOpen>
    void* Open(const std::string& strKey, TOpen funOpen) {
        Reserve(strKey);
        std::shared_ptr<TChild> pChild;
        try {
            pChild = funOpen();
            const std::lock_guard objLock(m_mtxChildren);
            if (!m_bClosed) {
                void* const hChild = pChild->Publish(pChild);
                m_mapChild[strKey] = pChild;
                return hChild;
            }
        } catch (...) {
            Forget(strKey);
            throw;
        }
        pChild->Close();
        throw CProducerError(GC_ERR_INVALID_HANDLE, strKey + " was being opened when the module above it was closed");
    }

    /// Frees the key of a child that has closed, or couldn't open.
    void Forget(const std::string& strKey) {
        std::shared_ptr<TChild> pChild;  // dies without the lock
        const std::lock_guard objLock(m_mtxChildren);
        if (const auto itChild = m_mapChild.find(strKey); itChild != m_mapChild.end()) {
            pChild = std::move(itChild->second);
            m_mapChild.erase(itChild);
        }
    }

    /// @return the child that is open under the key, or null.
    std::shared_ptr<TChild> Find(const std::string& strKey) const {
        const std::lock_guard objLock(m_mtxChildren);
        const auto itChild = m_mapChild.find(strKey);
        return itChild != m_mapChild.end() ? itChild->second : nullptr;
    }

    /// Closes all, and lets none be opened from now on.
    void CloseAll() noexcept {
        while (const std::shared_ptr<TChild> pChild = TakeOne()) {
            pChild->Close();
        }
    }

private:
    /// Those that are being opened stay: their opener finds the module closed.
    std::shared_ptr<TChild> TakeOne() {
        const std::lock_guard objLock(m_mtxChildren);
        m_bClosed = true;
        const auto itChild = std::find_if(m_mapChild.begin(), m_mapChild.end(),
                                          [](const auto& objEntry) { return objEntry.second != nullptr; });
        if (itChild == m_mapChild.end()) {
            return nullptr;
        }
        std::shared_ptr<TChild> pChild = std::move(itChild->second);
        m_mapChild.erase(itChild);
        return pChild;
    }

    void Reserve(const std::string& strKey) {
        const std::lock_guard objLock(m_mtxChildren);
        if (m_bClosed) {
            throw CProducerError(GC_ERR_INVALID_HANDLE, "the module above " + strKey + " was closed");
        }
        if (!m_mapChild.try_emplace(strKey).second) {
            throw CProducerError(GC_ERR_RESOURCE_IN_USE, strKey + " is open already in this process");
        }
    }

    mutable std::mutex m_mtxChildren;  // guards the two below; taken before the handle table's lock
    std::map<std::string, std::shared_ptr<TChild>> m_mapChild;  // null while one is being opened
    bool m_bClosed = false;
};

}  // namespace producer
