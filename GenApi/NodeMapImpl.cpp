#include "GenApi/NodeMapImpl.h"

#include <algorithm>

#include "GenApi/DescriptionReader.h"
#include "GenApi/NodeLoader.h"
#include "GenApi/PortNode.h"

namespace GenApi_3_0 {

CNodeMapImpl::CNodeMapImpl(std::string_view strText, const gcstring& strDeviceName)
    : m_pModel(ReadDescription(strText)), m_objContext(this, strDeviceName.str()), m_objNames(m_pModel->Nodes.size()) {
    m_vecNode = CNodeLoader(strText, *m_pModel, m_objNames, m_objContext).Load();
    for (const auto& pNode : m_vecNode) {
        m_nNodes += pNode != nullptr ? 1U : 0U;
    }
    CollectPolled();
}

CNodeMapImpl::~CNodeMapImpl() = default;

void CNodeMapImpl::GetNodes(NodeList_t& Nodes) const {
    Nodes.clear();
    Nodes.reserve(m_nNodes);
    for (const auto& pNode : m_vecNode) {
        if (pNode != nullptr) {
            Nodes.push_back(pNode.get());
        }
    }
}

// Neither names nor nodes change after loading, so that this needs no lock.
CNodeImpl* CNodeMapImpl::Find(std::string_view strName) const {
    for (const std::string_view strPrefix : {"Std::", "Cust::"}) {
        if (strName.starts_with(strPrefix)) {
            strName.remove_prefix(strPrefix.size());
            break;
        }
    }
    const std::uint32_t nNode = m_objNames.Find(strName);
    return nNode == kNoNode ? nullptr : m_vecNode[nNode].get();
}

INode* CNodeMapImpl::GetNode(const gcstring& Name) const {
    return Find(Name.view());
}

INode* CNodeMapImpl::FindNode(std::string_view strName) const {
    return Find(strName);
}

void CNodeMapImpl::InvalidateNodes() const {
    CChange objChange(m_objContext);
    for (const auto& pNode : m_vecNode) {
        if (pNode != nullptr) {
            objChange.InvalidatedAlone(pNode->Number());
        }
    }
    objChange.Finish();
}

bool CNodeMapImpl::Connect(IPort* pPort, const gcstring& PortName) const {
    auto* pNode = dynamic_cast<CPortNode*>(Find(PortName.view()));
    if (pNode == nullptr) {
        return false;
    }
    pNode->SetPortImpl(pPort);
    return true;
}

bool CNodeMapImpl::Connect(IPort* pPort) const {
    if (Connect(pPort, "Device")) {
        return true;
    }
    CPortNode* pOnly = nullptr;
    for (const auto& pNode : m_vecNode) {
        if (pNode != nullptr && pNode->Kind() == ETag::Port) {
            if (pOnly != nullptr) {
                return false;
            }
            pOnly = static_cast<CPortNode*>(pNode.get());
        }
    }
    if (pOnly != nullptr) {
        pOnly->SetPortImpl(pPort);
    }
    return pOnly != nullptr;
}

void CNodeMapImpl::CollectPolled() {
    for (const auto& pNode : m_vecNode) {
        const std::int64_t nPeriod = pNode != nullptr && pNode->IsPolled() ? pNode->GetPollingTime() : -1;
        if (nPeriod > 0) {
            m_vecPolled.push_back({pNode->Number(), nPeriod, 0});
        }
    }
}

void CNodeMapImpl::Poll(std::int64_t ElapsedTime) {
    CChange objChange(m_objContext);
    std::vector<std::uint32_t> vecDue;
    for (POLLED& objPolled : m_vecPolled) {
        const std::int64_t nRemaining = objPolled.Period - objPolled.Elapsed;
        if (ElapsedTime < nRemaining) {
            objPolled.Elapsed += std::max<std::int64_t>(ElapsedTime, 0);
        } else {
            objPolled.Elapsed = 0;
            vecDue.push_back(objPolled.Node);
        }
    }
    objChange.Invalidated(vecDue, kDirtyRegister | kDirtyBelow);
    objChange.Finish();
}

}  // namespace GenApi_3_0
