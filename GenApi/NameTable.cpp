#include "GenApi/NameTable.h"

#include <bit>

namespace GenApi_3_0 {
CNameTable::CNameTable(std::size_t nNames) : m_vecSlot(std::bit_ceil(nNames * 2 + 2)), m_nMask(m_vecSlot.size() - 1) {}

const CNameTable::SLOT& CNameTable::SlotOf(std::string_view strName, std::uint64_t nHash) const {
    std::size_t i = nHash & m_nMask;
    while (m_vecSlot[i].Node != UINT32_MAX && (m_vecSlot[i].Hash != nHash || m_vecSlot[i].Name != strName)) {
        i = (i + 1) & m_nMask;
    }
    return m_vecSlot[i];
}

std::uint32_t CNameTable::Insert(std::string_view strName, std::uint32_t nNode) {
    const std::uint64_t nHash = m_objHash(strName);
    SLOT& objSlot = const_cast<SLOT&>(SlotOf(strName, nHash));
    if (objSlot.Node == UINT32_MAX) {
        objSlot = {strName, nHash, nNode};
    }
    return objSlot.Node;
}

std::uint32_t CNameTable::Find(std::string_view strName) const {
    return SlotOf(strName, m_objHash(strName)).Node;
}

}  // namespace GenApi_3_0
