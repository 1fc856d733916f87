#include "GenApi/EventAdapterGeneric.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "GenApi/EventRecord.h"
#include "GenApi/GCException.h"
#include "GenApi/HexId.h"
#include "GenApi/NodeImpl.h"
#include "GenApi/NodeMap.h"

namespace GenApi_3_0 {

using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::Throw;

CEventAdapterGeneric::CEventAdapterGeneric(INodeMap* pNodeMap) {
    if (pNodeMap != nullptr) {
        AttachNodeMap(pNodeMap);
    }
}

CEventAdapterGeneric::~CEventAdapterGeneric() {
    try {
        DetachNodeMap();
    } catch (...) {
        // A callback's exception has nobody to go to.
    }
}

void CEventAdapterGeneric::AttachNodeMap(INodeMap* pNodeMap) {
    if (pNodeMap == nullptr) {
        Throw<InvalidArgumentException>("The event adapter got no node map");
    }
    DetachNodeMap();
    NodeList_t vecNode;
    pNodeMap->GetNodes(vecNode);
    std::vector<std::pair<std::uint64_t, CNodeImpl*>> vecFound;
    for (INode* pNode : vecNode) {
        const auto nEventID = ParseHexId(pNode->GetEventID().view());
        auto* pImpl = dynamic_cast<CNodeImpl*>(pNode);
        if (nEventID && pImpl != nullptr) {
            vecFound.emplace_back(*nEventID, pImpl);
        }
    }
    std::stable_sort(vecFound.begin(), vecFound.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& [nEventID, pNode] : vecFound) {
        if (m_vecEvent.empty() || m_vecEvent.back()->EventID() != nEventID) {
            m_vecEvent.push_back(std::make_unique<CEventRecord>(nEventID));
        }
        m_vecEvent.back()->AddNode(*pNode);
        m_pContext = &pNode->Context();
    }
}

void CEventAdapterGeneric::DetachNodeMap() {
    if (m_pContext == nullptr) {
        return;
    }
    // The records go with this function, whatever the callbacks do.
    const auto vecEvent = std::exchange(m_vecEvent, {});
    CChange objChange(*std::exchange(m_pContext, nullptr));
    for (const auto& pEvent : vecEvent) {
        pEvent->Clear();
    }
    objChange.Finish();
}

CEventRecord* CEventAdapterGeneric::Find(std::uint64_t nEventID) const {
    const auto it = std::lower_bound(m_vecEvent.begin(), m_vecEvent.end(), nEventID,
                                     [](const auto& pEvent, std::uint64_t n) { return pEvent->EventID() < n; });
    return it != m_vecEvent.end() && (*it)->EventID() == nEventID ? it->get() : nullptr;
}

void CEventAdapterGeneric::DeliverMessage(const std::uint8_t* pMessage, std::uint32_t nNumBytes,
                                          std::uint64_t nEventID) {
    if (nNumBytes > kMaxEventSize || (pMessage == nullptr && nNumBytes > 0)) {
        Throw<InvalidArgumentException>("An event of " + std::to_string(nNumBytes) + " bytes " +
                                        (pMessage == nullptr ? "came without them" : "is too large"));
    }
    CEventRecord* pEvent = Find(nEventID);
    if (pEvent == nullptr) {
        return;
    }
    CChange objChange(*m_pContext);
    pEvent->Deliver(pMessage, nNumBytes);
    objChange.Finish();
}

void CEventAdapterGeneric::DeliverMessage(const std::uint8_t* pMessage, std::uint32_t nNumBytes,
                                          const gcstring& EventID) {
    const std::optional<std::uint64_t> nEventID = ParseHexId(EventID.view());
    if (!nEventID) {
        Throw<InvalidArgumentException>("The event ID '" + EventID.str() + "' isn't a hexadecimal number");
    }
    DeliverMessage(pMessage, nNumBytes, *nEventID);
}

}  // namespace GenApi_3_0
