#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <shared_mutex>
#include <vector>

namespace producer {

/// What a GenTL handle may name: a module, a port, a buffer or an event.
class CHandled {
public:
    CHandled() = default;
    virtual ~CHandled() = default;
    CHandled(const CHandled&) = delete;
    CHandled& operator=(const CHandled&) = delete;
};

/// The handles of the whole process. A handle is a number and never an address: what a consumer hands back is looked up
/// and never followed, and a handle once closed stays unknown, since its place in the table counts its uses.
///
/// Any thread may call. What Find gives lives until the caller lets it go, so that a call that is under way survives
/// the close of its module.
class CHandleTable {
public:
    static CHandleTable& Get();

    /// @throws CProducerError  GC_ERR_RESOURCE_EXHAUSTED beyond some 16 million handles
    void* Add(std::shared_ptr<CHandled> pHandled);

    /// @return null for what is no handle of ours, or no more.
    std::shared_ptr<CHandled> Find(const void* hHandle) const;

    /// Takes the handle out of the table. Of several callers one gets the object, the others null.
    std::shared_ptr<CHandled> Take(const void* hHandle);

    /// @throws CProducerError  GC_ERR_INVALID_HANDLE, unless it names a TKind
    template <class TKind>
    std::shared_ptr<TKind> Require(const void* hHandle) const {
        std::shared_ptr<TKind> pKind = std::dynamic_pointer_cast<TKind>(Find(hHandle));
        if (!pKind) {
            ThrowInvalid(hHandle);
        }
        return pKind;
    }

    /// As Require, and takes it out. A handle of another kind stays.
    template <class TKind>
    std::shared_ptr<TKind> RequireAndTake(const void* hHandle) {
        Require<TKind>(hHandle);
        std::shared_ptr<TKind> pKind = std::dynamic_pointer_cast<TKind>(Take(hHandle));
        if (!pKind) {
            ThrowInvalid(hHandle);
        }
        return pKind;
    }

private:
    struct SLOT {
        std::uint64_t nGeneration = 1;
        std::shared_ptr<CHandled> pHandled;
    };

    const SLOT* FindSlot(const void* hHandle) const;
    [[noreturn]] static void ThrowInvalid(const void* hHandle);

    mutable std::shared_mutex m_mtxSlots;  // guards the two below; innermost of all locks
    std::vector<SLOT> m_vecSlot;
    std::vector<std::size_t> m_vecFree;  // indices of slots without an object
};

}  // namespace producer
