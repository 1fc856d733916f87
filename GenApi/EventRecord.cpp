#include "GenApi/EventRecord.h"

#include "GenApi/NumberText.h"
#include "GenApi/PortNode.h"

namespace GenApi_3_0 {

CEventRecord::CEventRecord(std::uint64_t nEventID)
    : m_nEventID(nEventID), m_objPort("The event " + FormatHex(static_cast<std::int64_t>(nEventID))) {}

void CEventRecord::AddNode(CNodeImpl& objNode) {
    if (auto* pPortNode = dynamic_cast<CPortNode*>(&objNode)) {
        m_vecPortNode.push_back(pPortNode);
    } else {
        m_vecOther.push_back(&objNode);
    }
}

void CEventRecord::Deliver(const std::uint8_t* pMessage, std::uint32_t nNumBytes) {
    if (!m_vecPortNode.empty()) {
        m_vecData.assign(pMessage, pMessage + nNumBytes);
        m_objPort.SetData(m_vecData);
    }
    for (CPortNode* pPortNode : m_vecPortNode) {
        pPortNode->SetPortImpl(&m_objPort);
    }
    for (CNodeImpl* pNode : m_vecOther) {
        pNode->InvalidateNode();
    }
}

void CEventRecord::Clear() {
    m_objPort.SetData({});
    for (CPortNode* pPortNode : m_vecPortNode) {
        // Another adapter may have put its own data behind the port in the meantime.
        if (pPortNode->GetPortImpl() == &m_objPort) {
            pPortNode->SetPortImpl(nullptr);
        }
    }
}

}  // namespace GenApi_3_0
