#include "producer/wire/MemoryAccess.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "gev/BigEndian.h"
#include "gev/GvcpMemory.h"

namespace producer {

namespace {

constexpr std::uint64_t kAddressSpace = std::uint64_t{1} << 32;
constexpr std::size_t kRegister = 4;

/// A block that the protocol can move, and the part of a buffer that lies in it.
struct BLOCK {
    std::uint32_t Address = 0;  // aligned
    std::size_t Size = 0;       // aligned
    std::size_t Skip = 0;       // bytes of the block before the part
    std::size_t Part = 0;       // bytes of the part
    std::size_t Offset = 0;     // of the part in the buffer
};

void CheckRange(std::uint64_t nAddress, std::size_t nSize) {
    if (nAddress > kAddressSpace || nSize > kAddressSpace - nAddress) {
        throw CProducerError(GC_ERR_INVALID_ADDRESS, std::to_string(nSize) + " bytes at address " +
                                                         std::to_string(nAddress) +
                                                         " lie outside a camera's 32-bit address space");
    }
}

/// The block with the byte at nOffset of a buffer that starts at nAddress.
BLOCK MakeBlock(std::uint64_t nAddress, std::size_t nSize, std::size_t nOffset) {
    BLOCK objBlock;
    const std::uint64_t nFirst = nAddress + nOffset;
    objBlock.Address = static_cast<std::uint32_t>(nFirst / kRegister * kRegister);
    objBlock.Skip = static_cast<std::size_t>(nFirst % kRegister);
    objBlock.Part = std::min(gev::kLongestMemoryBlock - objBlock.Skip, nSize - nOffset);
    objBlock.Size = (objBlock.Skip + objBlock.Part + kRegister - 1) / kRegister * kRegister;
    objBlock.Offset = nOffset;
    return objBlock;
}

bool IsRegister(std::uint64_t nAddress, std::size_t nSize) {
    return nSize == kRegister && nAddress % kRegister == 0;
}

}  // namespace

void CMemoryAccess::DoRead(std::uint64_t nAddress, std::span<std::byte> objBuffer) {
    CheckRange(nAddress, objBuffer.size());
    if (IsRegister(nAddress, objBuffer.size())) {
        gev::Put32(objBuffer, 0, m_objDialogue.DoReadRegister(static_cast<std::uint32_t>(nAddress)));
        return;
    }
    for (std::size_t nOffset = 0; nOffset < objBuffer.size();) {
        const BLOCK objBlock = MakeBlock(nAddress, objBuffer.size(), nOffset);
        const auto objPart = objBuffer.subspan(objBlock.Offset, objBlock.Part);
        if (objBlock.Size == objBlock.Part) {
            m_objDialogue.DoReadBlock(objBlock.Address, objPart);
        } else {
            std::array<std::byte, gev::kLongestMemoryBlock> arrBlock;
            m_objDialogue.DoReadBlock(objBlock.Address, std::span(arrBlock).first(objBlock.Size));
            std::memcpy(objPart.data(), arrBlock.data() + objBlock.Skip, objBlock.Part);
        }
        nOffset += objBlock.Part;
    }
}

void CMemoryAccess::DoWrite(std::uint64_t nAddress, std::span<const std::byte> objBuffer) {
    CheckRange(nAddress, objBuffer.size());
    const std::lock_guard objLock(m_mtxWrite);
    for (std::size_t nOffset = 0; nOffset < objBuffer.size();) {
        const BLOCK objBlock = MakeBlock(nAddress, objBuffer.size(), nOffset);
        std::array<std::byte, gev::kLongestMemoryBlock> arrBlock;
        const auto objWhole = std::span(arrBlock).first(objBlock.Size);
        // The camera knows whole registers only: what stands beside the part in its first and last one stays.
        if (objBlock.Skip != 0) {
            m_objDialogue.DoReadBlock(objBlock.Address, objWhole.first(kRegister));
        }
        if (const std::size_t nLast = objBlock.Size - kRegister;
            objBlock.Skip + objBlock.Part != objBlock.Size && (nLast != 0 || objBlock.Skip == 0)) {
            m_objDialogue.DoReadBlock(objBlock.Address + static_cast<std::uint32_t>(nLast), objWhole.last(kRegister));
        }
        std::memcpy(objWhole.data() + objBlock.Skip, objBuffer.data() + objBlock.Offset, objBlock.Part);
        WriteBlock(objBlock.Address, objWhole);
        nOffset += objBlock.Part;
    }
}

void CMemoryAccess::WriteBlock(std::uint32_t nAddress, std::span<const std::byte> objBlock) {
    if (m_bWritesBlocks && objBlock.size() > kRegister) {
        m_objDialogue.DoWriteBlock(nAddress, objBlock);
        return;
    }
    for (std::size_t nOffset = 0; nOffset < objBlock.size(); nOffset += kRegister) {
        m_objDialogue.DoWriteRegister(nAddress + static_cast<std::uint32_t>(nOffset), gev::Get32(objBlock, nOffset));
    }
}

}  // namespace producer
