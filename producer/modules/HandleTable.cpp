#include "producer/modules/HandleTable.h"

#include <mutex>
#include <utility>

#include "producer/ProducerError.h"

namespace producer {

namespace {

// A handle, from its lowest bit: a one, so that no aligned address is mistaken for it; the slot; the slot's generation.
constexpr unsigned kIndexShift = 1;
constexpr unsigned kGenerationShift = 25;
constexpr std::uint64_t kIndexMask = (std::uint64_t{1} << (kGenerationShift - kIndexShift)) - 1;
constexpr std::uint64_t kGenerationMask = (std::uint64_t{1} << (64 - kGenerationShift)) - 1;

static_assert(sizeof(void*) == sizeof(std::uint64_t), "a handle takes 64 bits");

std::uint64_t Number(const void* hHandle) {
    return reinterpret_cast<std::uintptr_t>(hHandle);
}

std::size_t IndexOf(const void* hHandle) {
    return static_cast<std::size_t>((Number(hHandle) >> kIndexShift) & kIndexMask);
}

}  // namespace

CHandleTable& CHandleTable::Get() {
    static CHandleTable& objTable = *new CHandleTable;  // threads of the consumer may outlive the statics
    return objTable;
}

void* CHandleTable::Add(std::shared_ptr<CHandled> pHandled) {
    const std::lock_guard objLock(m_mtxSlots);
    if (m_vecFree.empty()) {
        if (m_vecSlot.size() > kIndexMask) {
            throw CProducerError(GC_ERR_RESOURCE_EXHAUSTED, "there are too many open handles");
        }
        m_vecSlot.emplace_back();
        // The list of free slots never has to grow while a handle is taken out, which so can't fail.
        m_vecFree.reserve(m_vecSlot.capacity());
        m_vecFree.push_back(m_vecSlot.size() - 1);
    }
    const std::size_t nIndex = m_vecFree.back();
    m_vecFree.pop_back();
    SLOT& objSlot = m_vecSlot[nIndex];
    objSlot.pHandled = std::move(pHandled);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what consumers hold for a pointer is a number, and never followed
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>((objSlot.nGeneration << kGenerationShift) |
                                                               (std::uint64_t{nIndex} << kIndexShift) | 1));
}

const CHandleTable::SLOT* CHandleTable::FindSlot(const void* hHandle) const {
    const std::size_t nIndex = IndexOf(hHandle);
    if ((Number(hHandle) & 1) == 0 || nIndex >= m_vecSlot.size()) {
        return nullptr;
    }
    const SLOT& objSlot = m_vecSlot[nIndex];
    return objSlot.pHandled && objSlot.nGeneration == Number(hHandle) >> kGenerationShift ? &objSlot : nullptr;
}

std::shared_ptr<CHandled> CHandleTable::Find(const void* hHandle) const {
    const std::shared_lock objLock(m_mtxSlots);
    const SLOT* pSlot = FindSlot(hHandle);
    return pSlot != nullptr ? pSlot->pHandled : nullptr;
}

std::shared_ptr<CHandled> CHandleTable::Take(const void* hHandle) {
    const std::lock_guard objLock(m_mtxSlots);
    if (FindSlot(hHandle) == nullptr) {
        return nullptr;
    }
    const std::size_t nIndex = IndexOf(hHandle);
    SLOT& objSlot = m_vecSlot[nIndex];
    objSlot.nGeneration = objSlot.nGeneration == kGenerationMask ? 1 : objSlot.nGeneration + 1;
    m_vecFree.push_back(nIndex);
    return std::exchange(objSlot.pHandled, nullptr);
}

void CHandleTable::ThrowInvalid(const void* hHandle) {
    throw CProducerError(GC_ERR_INVALID_HANDLE, hHandle == nullptr
                                                    ? "the handle is null"
                                                    : "the handle is closed, was never given out, or names another "
                                                      "kind of module");
}

}  // namespace producer
