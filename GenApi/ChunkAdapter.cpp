#include "GenApi/ChunkAdapter.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "GenApi/ChunkPort.h"
#include "GenApi/GCException.h"
#include "GenApi/NodeMap.h"
#include "GenApi/PortNode.h"

namespace GenApi_3_0 {

using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::Throw;

namespace {

/// Chunks by their ID: a camera may send thousands, and a description ask for as many.
class CChunkIndex {
public:
    explicit CChunkIndex(std::span<const SingleChunkData_t> spanChunk) {
        m_vecChunk.reserve(spanChunk.size());
        for (const SingleChunkData_t& objChunk : spanChunk) {
            m_vecChunk.push_back(&objChunk);
        }
        std::stable_sort(m_vecChunk.begin(), m_vecChunk.end(),
                         [](const auto* a, const auto* b) { return a->ChunkID < b->ChunkID; });
    }

    /// The first one of that ID, null if there is none.
    const SingleChunkData_t* Find(std::optional<std::uint64_t> nID) const {
        if (!nID) {
            return nullptr;
        }
        const auto it = std::lower_bound(m_vecChunk.begin(), m_vecChunk.end(), *nID,
                                         [](const auto* pChunk, std::uint64_t n) { return pChunk->ChunkID < n; });
        return it != m_vecChunk.end() && (*it)->ChunkID == *nID ? *it : nullptr;
    }

private:
    std::vector<const SingleChunkData_t*> m_vecChunk;
};

}  // namespace

CChunkAdapter::CChunkAdapter(INodeMap* pNodeMap, std::int64_t nMaxChunkCacheSize)
    : m_nMaxCopy(nMaxChunkCacheSize < 0 ? std::numeric_limits<std::size_t>::max()
                                        : static_cast<std::size_t>(nMaxChunkCacheSize)) {
    if (pNodeMap != nullptr) {
        AttachNodeMap(pNodeMap);
    }
}

CChunkAdapter::~CChunkAdapter() {
    try {
        DetachNodeMap();
    } catch (...) {
        // A callback's exception has nobody to go to.
    }
}

void CChunkAdapter::AttachNodeMap(INodeMap* pNodeMap) {
    if (pNodeMap == nullptr) {
        Throw<InvalidArgumentException>("The chunk adapter got no node map");
    }
    DetachNodeMap();
    NodeList_t vecNode;
    pNodeMap->GetNodes(vecNode);
    for (INode* pNode : vecNode) {
        if (CPortNode* pPortNode = CChunkPort::FindChunkPort(pNode)) {
            m_vecPort.push_back(std::make_unique<CChunkPort>(*pPortNode));
            m_pContext = &pPortNode->Context();
        }
    }
}

void CChunkAdapter::DetachNodeMap() {
    if (m_pContext == nullptr) {
        return;
    }
    // The ports go with this function, whatever the callbacks do.
    const auto vecPort = std::exchange(m_vecPort, {});
    CChange objChange(*std::exchange(m_pContext, nullptr));
    for (const auto& pPort : vecPort) {
        pPort->Clear();
    }
    objChange.Finish();
}

std::size_t CChunkAdapter::AttachChunks(const std::uint8_t* pBuffer, std::span<const SingleChunkData_t> spanChunk) {
    const CChunkIndex objIndex(spanChunk);
    std::size_t nAttached = 0;
    ChangePorts([&](CChunkPort& objPort) {
        if (const SingleChunkData_t* pChunk = objIndex.Find(objPort.ChunkID())) {
            objPort.Attach(pBuffer, *pChunk, m_nMaxCopy);
            ++nAttached;
        } else {
            objPort.Clear();
        }
    });
    return nAttached;
}

void CChunkAdapter::UpdateBuffer(std::uint8_t* pBuffer) {
    if (pBuffer == nullptr) {
        Throw<InvalidArgumentException>("The chunk adapter got no buffer");
    }
    ChangePorts([pBuffer](CChunkPort& objPort) { objPort.Update(pBuffer); });
}

void CChunkAdapter::DetachBuffer() {
    ChangePorts([](CChunkPort& objPort) { objPort.DetachBuffer(); });
}

void CChunkAdapter::ClearCaches() {
    ChangePorts([](CChunkPort& objPort) { objPort.ClearCache(); });
}

/// Runs a step for each port as one change, so that callbacks see all ports with their new data. A port must not keep
/// pointing into a buffer that the caller believes refused.
template <class Step>
void CChunkAdapter::ChangePorts(Step step) {
    if (m_pContext == nullptr) {
        return;
    }
    CChange objChange(*m_pContext);
    try {
        for (const auto& pPort : m_vecPort) {
            step(*pPort);
        }
    } catch (...) {
        for (const auto& pPort : m_vecPort) {
            pPort->Clear();
        }
        throw;
    }
    objChange.Finish();
}

}  // namespace GenApi_3_0
