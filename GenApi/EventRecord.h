#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "GenApi/DataPort.h"

namespace GenApi_3_0 {

class CNodeImpl;
class CPortNode;

/// What a node map has for the events of one ID, and the data of the last of them. Owned by an event adapter, used with
/// the node map's lock held.
class CEventRecord {
public:
    explicit CEventRecord(std::uint64_t nEventID);

    /// @param objNode  a port or any other node with the ID
    void AddNode(CNodeImpl& objNode);
    std::uint64_t EventID() const { return m_nEventID; }

    void Deliver(const std::uint8_t* pMessage, std::uint32_t nNumBytes);
    /// No data any more.
    void Clear();

private:
    std::uint64_t m_nEventID;
    std::vector<CPortNode*> m_vecPortNode;
    std::vector<CNodeImpl*> m_vecOther;
    std::vector<std::uint8_t> m_vecData;
    CDataPort m_objPort;
};

}  // namespace GenApi_3_0
