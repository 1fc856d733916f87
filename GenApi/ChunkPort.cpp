#include "GenApi/ChunkPort.h"

#include <exception>
#include <string>

#include "GenApi/HexId.h"
#include "GenApi/PortNode.h"

namespace GenApi_3_0 {

CPortNode* CChunkPort::FindChunkPort(INode* pNode) {
    auto* pPortNode = dynamic_cast<CPortNode*>(pNode);
    gcstring strValue;
    gcstring strAttribute;
    // An ID that is read from elsewhere may be unreadable now, which makes the port none the less one.
    const bool bHasId = pPortNode != nullptr && (pPortNode->GetProperty("ChunkID", strValue, strAttribute) ||
                                                 pPortNode->GetProperty("pChunkID", strValue, strAttribute));
    return bHasId ? pPortNode : nullptr;
}

CChunkPort::CChunkPort(CPortNode& objNode) : m_objNode(objNode), m_objPort("The chunk of " + objNode.Subject()) {}

std::optional<std::uint64_t> CChunkPort::ChunkID() const {
    try {
        return ParseHexId(m_objNode.GetChunkID().view());
    } catch (const std::exception&) {
        return std::nullopt;  // one ID that can't be read takes nothing from the other ports
    }
}

void CChunkPort::Attach(const std::uint8_t* pBuffer, const SingleChunkData_t& objChunk, std::size_t nMaxCopy) {
    m_objChunk = objChunk;
    m_bCopied = m_objNode.IsChunkDataCached() && objChunk.ChunkLength <= nMaxCopy;
    Show(pBuffer);
}

void CChunkPort::Update(const std::uint8_t* pBuffer) {
    if (m_objChunk) {
        Show(pBuffer);
    }
}

void CChunkPort::Show(const std::uint8_t* pBuffer) {
    std::span<const std::uint8_t> spanData(pBuffer + m_objChunk->ChunkOffset, m_objChunk->ChunkLength);
    if (m_bCopied) {
        m_vecCopy.assign(spanData.begin(), spanData.end());
        spanData = m_vecCopy;
    }
    m_objPort.SetData(spanData);
    m_bHasData = true;
    m_objNode.SetPortImpl(&m_objPort);
}

void CChunkPort::Clear() {
    m_objChunk.reset();
    m_objPort.SetData({});
    m_vecCopy = {};
    // Another adapter may have put its own data behind the port in the meantime.
    if (m_bHasData && m_objNode.GetPortImpl() == &m_objPort) {
        m_objNode.SetPortImpl(nullptr);
    }
    m_bHasData = false;
}

void CChunkPort::DetachBuffer() {
    if (!m_bCopied) {
        Clear();
    }
    m_objChunk.reset();
}

void CChunkPort::ClearCache() {
    if (m_bCopied) {
        Clear();
    }
}

}  // namespace GenApi_3_0
