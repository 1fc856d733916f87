#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/BufferModuleInfo.h"
#include "TLClass/TLClassMain/UnCopyable.h"

class CGenTLLib;

namespace GenApi_3_0 {
class CChunkAdapter;
}

/// The most bytes of one buffer. No frame comes near it: a camera that claims more is taken to answer nonsense.
inline constexpr std::uint64_t kMaxBufferSize = std::uint64_t{64} << 30;

/// The most chunks that a buffer is believed to have. A producer that counts more answers nonsense.
inline constexpr std::size_t kMaxChunkCount = 65536;

/// One block of memory that frames are put into: empty, allocated, or announced to the producer as well.
///
/// Owned by its data stream, which allocates, announces, revokes and frees it while no event thread runs. Between that,
/// the thread that takes frames queues it again and reads its chunks; a polling caller does so itself. No lock. Which
/// queue of the producer holds it isn't known here.
///
/// Its address is the user pointer of the announcement, by which the event of a filled buffer finds it again: so it is
/// never moved.
class CBuffer final : public CUnCopyable {
public:
    /// @param pLib  not owned
    CBuffer(CGenTLLib* pLib, DS_HANDLE hDataStream) : m_pLib(pLib), m_hDataStream(hDataStream) {}
    /// Revokes, then frees.
    ~CBuffer();

    /// Gets a block of this size. A block that has it is kept, with what is in it; any other gives way to an
    /// uninitialised one. An announced buffer has to be revoked before its size changes.
    /// @param nSize  bytes
    /// @throws CUnexpectedError  the size is 0 or beyond kMaxBufferSize, or there isn't so much memory; what was
    ///                           there is still there
    void AllocateBuffer(std::uint64_t nSize);

    /// Makes the memory known to the producer. Does nothing if it is.
    /// @throws CUnexpectedError  there is no memory
    /// @throws CZrException      by the result of the producer
    void AnnounceBuffer();

    /// Takes the memory back, whatever the producer says, which goes to the log. Does nothing if it isn't announced.
    void RevokeBuffer() noexcept;

    /// Gives the buffer to the producer to be filled. Allocates nothing.
    /// @throws CUnexpectedError  it isn't announced
    /// @throws CZrException      by the result of the producer
    void QueueBuffer();

    /// What the producer tells about the buffer and the frame in it; asked anew at each call. Allocates nothing.
    BUFFER_MODULE_INFO GetBufferInfo() const;

    /// Where the chunks of the frame lie. Empty without chunks. Entries that the producer counts and then doesn't fill
    /// are zero.
    /// @throws CZrException      by the result of the producer
    /// @throws CUnexpectedError  more than kMaxChunkCount
    std::vector<SINGLE_CHUNK_DATA> GetChunkData() const;

    /// Whether any chunk reaches out of the buffer.
    bool IsChunkDataInvalid(const std::vector<SINGLE_CHUNK_DATA>& vecChunkData) const;

    /// Puts the chunks behind the adapter's node map, which reads from the buffer's memory from then on.
    /// @param pChunkAdapter  not owned
    /// @throws GenICam_3_0::GenericException  a chunk reaches out of the buffer, or a callback of a node failed
    void AttachChunkData(GenApi_3_0::CChunkAdapter* pChunkAdapter,
                         const std::vector<SINGLE_CHUNK_DATA>& vecChunkData) const;

    /// Puts the memory of this buffer behind the adapter's node map, with the layout that was attached last.
    void UpdateChunkData(GenApi_3_0::CChunkAdapter* pChunkAdapter) const;

private:
    std::size_t __GetChunkDataSize() const;
    std::vector<SINGLE_CHUNK_DATA> __GetChunkDataContent(std::size_t nCount) const;

    CGenTLLib* const m_pLib;
    const DS_HANDLE m_hDataStream;
    // Set while announced. Atomic, as a start that fails revokes while the event's thread still runs, and a producer
    // that refuses to start may have filled a buffer all the same.
    std::atomic<BUFFER_HANDLE> m_hBuffer = nullptr;
    std::unique_ptr<std::uint8_t[]> m_pBuffer;
    std::uint64_t m_nSize = 0;  // bytes of m_pBuffer
};
