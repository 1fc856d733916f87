#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "GenApi/SeededHash.h"

namespace GenApi_3_0 {

/// Finds a node's number by its name. Filled at load, then unchanged and free to be asked by any thread without a lock.
class CNameTable {
public:
    explicit CNameTable(std::size_t nNames);

    /// @param strName  must stay where it is
    /// @return the number that already has that name, or nNode if the name is new
    std::uint32_t Insert(std::string_view strName, std::uint32_t nNode);
    /// @return kNoNode if there is none
    std::uint32_t Find(std::string_view strName) const;

private:
    struct SLOT {
        std::string_view Name;
        std::uint64_t Hash = 0;
        std::uint32_t Node = UINT32_MAX;
    };

    const SLOT& SlotOf(std::string_view strName, std::uint64_t nHash) const;

    std::vector<SLOT> m_vecSlot;
    std::size_t m_nMask;
    CSeededHash m_objHash;
};

}  // namespace GenApi_3_0
