#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "tests/producer_double/GenTLError.h"
#include "tests/producer_double/Monitor.h"

namespace ProducerDouble {

/// What a handle can stand for.
class CHandled {
public:
    virtual ~CHandled() = default;
    virtual const std::string& HandledName() const = 0;
};

/// The handles that the consumer holds. A handle is a number and no address, and none is given out twice: one that was
/// closed is told from every later one.
class CHandles {
public:
    void* Open(std::shared_ptr<CHandled> pHandled) {
        void* h = Next();
        m_mapHandled.emplace(h, std::move(pHandled));
        return h;
    }

    /// A handle for something that is found in its parent, as a buffer is.
    void* Next() { return reinterpret_cast<void*>(m_nNext += 16); }

    void Close(void* h) { m_mapHandled.erase(h); }

    template <class THandled>
    std::shared_ptr<THandled> Find(void* h) const {
        const auto it = m_mapHandled.find(h);
        auto pFound = it == m_mapHandled.end() ? nullptr : std::dynamic_pointer_cast<THandled>(it->second);
        if (pFound == nullptr) {
            Refuse(GC_ERR_INVALID_HANDLE, "no open module has this handle");
        }
        return pFound;
    }

    /// Null if the handle stands for nothing.
    const std::string* NameOf(void* h) const {
        const auto it = m_mapHandled.find(h);
        return it == m_mapHandled.end() ? nullptr : &it->second->HandledName();
    }

    /// In the order of opening.
    const std::map<void*, std::shared_ptr<CHandled>>& All() const { return m_mapHandled; }

private:
    std::uintptr_t m_nNext = 0x10000000;
    std::map<void*, std::shared_ptr<CHandled>> m_mapHandled;
};

/// What every part of the double shares.
struct CONTEXT {
    MONITOR objMonitor;
    CHandles objHandles;  // guarded by the monitor, as all behind it
};

}  // namespace ProducerDouble
