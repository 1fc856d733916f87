#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "GenApi/ChunkData.h"

namespace GenApi_3_0 {

class CChunkPort;
class CNodeContext;
class INodeMap;

/// Puts the chunks of a buffer behind the chunk ports of a node map, so that the chunk's features read from it.
///
/// A chunk port without data makes its nodes not available, and so does the adapter for all of them before the first
/// buffer and after the last. Chunk features are read only. The bytes stay the caller's and must stay where they are
/// until the next AttachBuffer, UpdateBuffer or DetachBuffer; ports whose description asks for cached chunk data keep a
/// copy that lasts until ClearCaches or the next of these.
///
/// Each change is one change of the node map: it takes its lock, drops the caches of all nodes that stand on a chunk,
/// and calls each touched node's callbacks once, when every port has its new data. Apart from this lock the adapter has
/// none: one thread at a time. The node map must outlive the adapter or be detached before it goes.
class CChunkAdapter {
public:
    /// What AttachBuffer is told when the caller has checked the layout itself.
    static constexpr std::int64_t kUncheckedLength = -1;

    /// @param pNodeMap            attached at once; may be null
    /// @param nMaxChunkCacheSize  bytes of a chunk that may be copied for one port, -1 for no limit; a larger chunk
    ///                            isn't kept
    explicit CChunkAdapter(INodeMap* pNodeMap = nullptr, std::int64_t nMaxChunkCacheSize = -1);
    virtual ~CChunkAdapter();
    CChunkAdapter(const CChunkAdapter&) = delete;
    CChunkAdapter& operator=(const CChunkAdapter&) = delete;

    /// Takes the node map's chunk ports. One that is attached already is detached first.
    /// @throws InvalidArgumentException  no node map
    void AttachNodeMap(INodeMap* pNodeMap);
    /// Gives the chunk ports back, without data.
    void DetachNodeMap();

    /// Puts a layout of chunks behind the ports. Ports whose ID isn't in it lose their data; of two chunks with the
    /// same ID the first counts. Without a node map nothing is kept. After an exception no port has data, unless it was
    /// a callback's.
    /// @param pChunkData     nNumChunks entries; needed for the call alone
    /// @param pStatistics    filled; may be null
    /// @param nBufferLength  bytes of the buffer; kUncheckedLength if the caller vouches for the layout
    /// @throws InvalidArgumentException  an argument is missing or negative, or a chunk reaches out of the buffer
    virtual void AttachBuffer(std::uint8_t* pBuffer, const SingleChunkData_t* pChunkData, std::int64_t nNumChunks,
                              AttachStatistics_t* pStatistics = nullptr,
                              std::int64_t nBufferLength = kUncheckedLength) = 0;
    /// Takes another buffer with the layout that was attached last. As long as that one at least, which is the caller's
    /// to know.
    /// @throws InvalidArgumentException  no buffer
    void UpdateBuffer(std::uint8_t* pBuffer);
    /// Lets go of the buffer. Copies stay.
    void DetachBuffer();
    /// Drops the copies. Ports that lived on theirs have no data any more, even if the buffer is still attached.
    void ClearCaches();

protected:
    std::size_t NumPorts() const { return m_vecPort.size(); }
    /// Gives each port its chunk, as one change of the node map.
    /// @param spanChunk  lies within the buffer
    /// @return how many ports have data now
    std::size_t AttachChunks(const std::uint8_t* pBuffer, std::span<const SingleChunkData_t> spanChunk);

private:
    template <class Step>
    void ChangePorts(Step step);

    CNodeContext* m_pContext = nullptr;  // of the attached node map, if it has a chunk port
    std::size_t m_nMaxCopy;              // bytes of a chunk that may be copied
    std::vector<std::unique_ptr<CChunkPort>> m_vecPort;
};

}  // namespace GenApi_3_0
