#include "tests/producer_double/Registers.h"

#include <algorithm>
#include <limits>

namespace ProducerDouble {

// Calls fnVisit(offset in the range, address of the bytes, their number) for each piece of the range that a block
// holds.
template <class TBlocks, class TVisit>
void CRegisters::__ForEachPiece(TBlocks& mapBlock, std::uint64_t nAddress, std::uint64_t nLength, TVisit fnVisit) {
    const std::uint64_t nEnd = nAddress + nLength;
    auto it = mapBlock.upper_bound(nAddress);
    if (it != mapBlock.begin()) {
        --it;
    }
    for (; it != mapBlock.end() && it->first < nEnd; ++it) {
        const std::uint64_t nFirst = std::max(nAddress, it->first);
        const std::uint64_t nLast = std::min<std::uint64_t>(nEnd, it->first + it->second.size());
        if (nFirst < nLast) {
            fnVisit(nFirst - nAddress, it->second.data() + (nFirst - it->first), nLast - nFirst);
        }
    }
}

bool CRegisters::__IsCovered(std::uint64_t nAddress, std::uint64_t nLength) const {
    if (nLength > std::numeric_limits<std::uint64_t>::max() - nAddress) {
        return false;
    }
    std::uint64_t nCovered = 0;
    __ForEachPiece(m_mapBlock, nAddress, nLength,
                   [&](std::uint64_t, const std::byte*, std::uint64_t nPiece) { nCovered += nPiece; });
    return nCovered == nLength;
}

void CRegisters::Place(std::uint64_t nAddress, std::span<const std::byte> bytes) {
    Remove(nAddress, bytes.size());
    if (!bytes.empty()) {
        m_mapBlock[nAddress] = BYTES(bytes.begin(), bytes.end());
    }
}

void CRegisters::Remove(std::uint64_t nAddress, std::uint64_t nLength) {
    const std::uint64_t nEnd = nAddress + nLength;
    auto it = m_mapBlock.upper_bound(nAddress);
    if (it != m_mapBlock.begin()) {
        --it;
    }
    while (it != m_mapBlock.end() && it->first < nEnd) {
        const std::uint64_t nFirst = it->first;
        const BYTES vecOld = std::move(it->second);
        const std::uint64_t nOldEnd = nFirst + vecOld.size();
        it = m_mapBlock.erase(it);
        if (nFirst < nAddress) {
            m_mapBlock[nFirst] = BYTES(
                vecOld.begin(), vecOld.begin() + static_cast<std::ptrdiff_t>(std::min(nAddress, nOldEnd) - nFirst));
        }
        if (nOldEnd > nEnd) {
            m_mapBlock[std::max(nEnd, nFirst)] =
                BYTES(vecOld.begin() + static_cast<std::ptrdiff_t>(std::max(nEnd, nFirst) - nFirst), vecOld.end());
        }
    }
}

bool CRegisters::Read(std::uint64_t nAddress, std::span<std::byte> bytes) const {
    if (!__IsCovered(nAddress, bytes.size())) {
        return false;
    }
    __ForEachPiece(m_mapBlock, nAddress, bytes.size(),
                   [&](std::uint64_t nOffset, const std::byte* pPiece, std::uint64_t nPiece) {
                       std::copy_n(pPiece, nPiece, bytes.data() + nOffset);
                   });
    return true;
}

bool CRegisters::Write(std::uint64_t nAddress, std::span<const std::byte> bytes) {
    if (!__IsCovered(nAddress, bytes.size())) {
        return false;
    }
    __ForEachPiece(m_mapBlock, nAddress, bytes.size(),
                   [&](std::uint64_t nOffset, std::byte* pPiece, std::uint64_t nPiece) {
                       std::copy_n(bytes.data() + nOffset, nPiece, pPiece);
                   });
    return true;
}

}  // namespace ProducerDouble
