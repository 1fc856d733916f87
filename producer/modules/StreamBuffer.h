#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "GenTL/GenTL.h"
#include "producer/modules/HandleTable.h"
#include "producer/modules/InfoValue.h"
#include "producer/stream/Block.h"

namespace producer {

/// Where an announced buffer is.
enum class BUFFER_PLACE {
    Unqueued,  ///< with the consumer
    Input,     ///< waits to be filled
    Filling,   ///< packets are put into it
    Output,    ///< waits to be handed out by EventGetData
};

/// A buffer that a consumer announced: its memory and what it holds.
///
/// Owned by its stream's pool, whose lock guards all of it but the memory's content; calls that are under way hold it.
class CStreamBuffer : public CHandled {
public:
    /// The consumer's own memory, which it keeps until it has revoked the buffer.
    CStreamBuffer(std::span<std::byte> arrMemory, void* pUser) : m_arrMemory(arrMemory), m_pUser(pUser) {}
    /// Memory of the producer.
    /// @throws std::bad_alloc
    CStreamBuffer(std::size_t nSize, void* pUser);

    [[nodiscard]] std::span<std::byte> GetMemory() const { return m_arrMemory; }
    [[nodiscard]] void* GetUserPointer() const { return m_pUser; }
    [[nodiscard]] bool IsOwnMemory() const { return m_pOwned != nullptr; }

    /// What it holds from now on.
    void Fill(const FINISHED_BLOCK& objBlock, std::uint64_t nTickFrequency);
    /// It holds nothing any more: what it held is given up for the next image.
    void Clear() { m_bFilled = false; }

    /// @throws CProducerError  GC_ERR_NOT_AVAILABLE for what isn't known of this buffer
    [[nodiscard]] CInfoValue GetInfo(BUFFER_INFO_CMD nCommand) const;

    /// The chunks that it holds, in the order of their places; none is no fault.
    /// @throws CProducerError  GC_ERR_PARSING_CHUNK_DATA when they don't fit together
    [[nodiscard]] std::vector<SINGLE_CHUNK_DATA> GetChunks() const;

    // What the pool notes of it.
    void* m_hBuffer = nullptr;
    BUFFER_PLACE m_ePlace = BUFFER_PLACE::Unqueued;
    BUFFER_PLACE m_eNext = BUFFER_PLACE::Output;  // while it is being filled: where it goes then; Input and Unqueued
                                                  // give up what it was filled with

private:
    [[nodiscard]] CInfoValue GetImageInfo(BUFFER_INFO_CMD nCommand) const;
    [[nodiscard]] bool HoldsChunks() const;

    std::unique_ptr<std::byte[]> m_pOwned;
    std::span<std::byte> m_arrMemory;
    void* m_pUser;
    bool m_bFilled = false;              // since it was last put into the input pool
    FINISHED_BLOCK m_objBlock;           // meaningful while it is filled
    std::uint64_t m_nTickFrequency = 0;  // of the camera, Hz; 0 when it isn't known
};

}  // namespace producer
