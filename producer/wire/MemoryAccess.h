#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>

#include "producer/wire/ControlDialogue.h"

namespace producer {

/// Reads and writes of any length at any address, as the blocks and registers that the protocol knows.
/// Any thread may call.
class CMemoryAccess {
public:
    /// @param bWritesBlocks  whether the camera knows WRITEMEM
    CMemoryAccess(CControlDialogue& objDialogue, bool bWritesBlocks)
        : m_objDialogue(objDialogue), m_bWritesBlocks(bWritesBlocks) {}

    /// As CControlChannel::DoRead and DoWrite.
    void DoRead(std::uint64_t nAddress, std::span<std::byte> objBuffer);
    void DoWrite(std::uint64_t nAddress, std::span<const std::byte> objBuffer);

private:
    void WriteBlock(std::uint32_t nAddress, std::span<const std::byte> objBlock);

    CControlDialogue& m_objDialogue;
    const bool m_bWritesBlocks;
    std::mutex m_mtxWrite;  // held for a whole write: no other comes between the read of an edge and its write
};

}  // namespace producer
