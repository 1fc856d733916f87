#include "GenApi/NameTable.h"

#include <bit>
#include <cstring>
#include <random>

namespace GenApi_3_0 {
namespace {

// Drawn anew by each process, so that no description can be made whose names all fall into one place.
std::uint64_t Seed() {
    static const std::uint64_t s_nSeed = (std::uint64_t{std::random_device{}()} << 32U) | std::random_device{}();
    return s_nSeed;
}

std::uint64_t Mix(std::uint64_t n) {
    n ^= n >> 32U;
    n *= 0xD6E8FEB86659FD93U;
    n ^= n >> 32U;
    return n;
}

std::uint64_t HashOf(std::string_view strName) {
    std::uint64_t nHash = Seed() ^ (strName.size() * 0x9E3779B97F4A7C15U);
    while (strName.size() >= 8) {
        std::uint64_t nChunk = 0;
        std::memcpy(&nChunk, strName.data(), 8);
        nHash = Mix(nHash ^ nChunk);
        strName.remove_prefix(8);
    }
    std::uint64_t nRest = 0;
    std::memcpy(&nRest, strName.data(), strName.size());
    return Mix(Mix(nHash ^ nRest) + 0x9E3779B97F4A7C15U);
}

}  // namespace

CNameTable::CNameTable(std::size_t nNames) : m_vecSlot(std::bit_ceil(nNames * 2 + 2)), m_nMask(m_vecSlot.size() - 1) {}

const CNameTable::SLOT& CNameTable::SlotOf(std::string_view strName, std::uint64_t nHash) const {
    std::size_t i = nHash & m_nMask;
    while (m_vecSlot[i].Node != UINT32_MAX && (m_vecSlot[i].Hash != nHash || m_vecSlot[i].Name != strName)) {
        i = (i + 1) & m_nMask;
    }
    return m_vecSlot[i];
}

std::uint32_t CNameTable::Insert(std::string_view strName, std::uint32_t nNode) {
    const std::uint64_t nHash = HashOf(strName);
    SLOT& objSlot = const_cast<SLOT&>(SlotOf(strName, nHash));
    if (objSlot.Node == UINT32_MAX) {
        objSlot = {strName, nHash, nNode};
    }
    return objSlot.Node;
}

std::uint32_t CNameTable::Find(std::string_view strName) const {
    return SlotOf(strName, HashOf(strName)).Node;
}

}  // namespace GenApi_3_0
