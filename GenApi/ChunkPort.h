#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "GenApi/ChunkData.h"
#include "GenApi/DataPort.h"

namespace GenApi_3_0 {

class CPortNode;
class INode;

/// A chunk port of a node map and the chunk behind it. Owned by a chunk adapter, used with the node map's lock held.
class CChunkPort {
public:
    /// Null if the node is no port or has no chunk ID.
    static CPortNode* FindChunkPort(INode* pNode);

    explicit CChunkPort(CPortNode& objNode);

    /// The ID that the port asks for now. Nothing if it can't be told.
    std::optional<std::uint64_t> ChunkID() const;

    /// @param nMaxCopy  bytes that may be copied if the description asks for it
    void Attach(const std::uint8_t* pBuffer, const SingleChunkData_t& objChunk, std::size_t nMaxCopy);
    /// Takes the chunk of the last Attach from another buffer, if there was one.
    void Update(const std::uint8_t* pBuffer);
    /// No data any more, and no chunk for Update.
    void Clear();
    /// The same, but a copy stays.
    void DetachBuffer();
    /// Drops the copy if that is what the port lives on.
    void ClearCache();

private:
    void Show(const std::uint8_t* pBuffer);

    CPortNode& m_objNode;
    CDataPort m_objPort;
    std::optional<SingleChunkData_t> m_objChunk;
    bool m_bHasData = false;
    bool m_bCopied = false;
    std::vector<std::uint8_t> m_vecCopy;
};

}  // namespace GenApi_3_0
