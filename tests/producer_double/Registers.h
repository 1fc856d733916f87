#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>

#include "tests/producer_double/ProducerControl.h"

namespace ProducerDouble {

/// A sparse register space: blocks of bytes that don't overlap, with holes between them.
class CRegisters {
public:
    /// Writes over what is there and gives every byte of a hole a register.
    void Place(std::uint64_t nAddress, std::span<const std::byte> bytes);
    void Remove(std::uint64_t nAddress, std::uint64_t nLength);

    /// False, with nothing done, if a byte of the range has no register.
    bool Read(std::uint64_t nAddress, std::span<std::byte> bytes) const;
    bool Write(std::uint64_t nAddress, std::span<const std::byte> bytes);

private:
    bool __IsCovered(std::uint64_t nAddress, std::uint64_t nLength) const;

    template <class TBlocks, class TVisit>
    static void __ForEachPiece(TBlocks& mapBlock, std::uint64_t nAddress, std::uint64_t nLength, TVisit fnVisit);

    std::map<std::uint64_t, BYTES> m_mapBlock;  // by first address
};

}  // namespace ProducerDouble
