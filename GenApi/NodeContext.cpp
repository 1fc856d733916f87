#include "GenApi/NodeContext.h"

#include <algorithm>
#include <utility>

#include "GenApi/GCException.h"
#include "GenApi/NodeMapLimits.h"

namespace GenApi_3_0 {

using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

void CNodeContext::SetNodeCount(std::size_t nNodes) {
    m_vecState.resize(nNodes);
    m_vecNode.resize(nNodes);
    m_vecVisited.resize(nNodes);
}

void CNodeContext::Visit(std::uint32_t nNode, std::uint8_t nDirt) {
    const auto nNew = static_cast<std::uint8_t>(nDirt & ~m_vecVisited[nNode]);
    if (nNew == 0) {
        return;
    }
    if (m_vecVisited[nNode] == 0) {
        m_vecReached.push_back(nNode);
    }
    m_vecVisited[nNode] |= nNew;
    m_vecPending.push_back({nNode, nNew});
}

void CNodeContext::DropCaches(std::uint32_t nNode, std::uint8_t nDirt) {
    NODE_STATE& objState = m_vecState[nNode];
    if ((nDirt & (kDirtyRegister | kDirtyValue | kDirtyBytes)) != 0) {
        objState.ValueValid = false;
    }
    if ((nDirt & (kDirtyRegister | kDirtyBytes)) != 0 && objState.pCell != nullptr) {
        objState.pCell->Valid = false;
    }
    // A changed value may be one that this node's own access mode hangs on, as with variables that can't be read.
    if ((nDirt & kDirtyAccess) != 0) {
        objState.Access = _UndefinedAccesMode;
    }
}

bool CNodeContext::TakeCacheRoom(REGISTER_CELL& objCell, std::size_t nBytes) {
    const std::size_t nOthers = m_nCachedBytes - objCell.Bytes.size();
    if (nBytes > kMaxCachedBytes - std::min(nOthers, kMaxCachedBytes)) {
        return false;
    }
    m_nCachedBytes = nOthers + nBytes;
    return true;
}

void CNodeContext::VisitParents() {
    std::size_t nLinks = 0;
    while (!m_vecPending.empty()) {
        const PENDING objPending = m_vecPending.back();
        m_vecPending.pop_back();
        const std::span<const LINK> parents = m_objGraph.Parents(objPending.Node);
        nLinks += parents.size();
        for (const LINK& objParent : parents) {
            Visit(objParent.Node, SpreadOver(objParent.Kind, objPending.Dirt));
        }
        if ((objPending.Dirt & kDirtyBelow) != 0) {
            const std::span<const LINK> sources = m_objGraph.Sources(objPending.Node);
            nLinks += sources.size();
            for (const LINK& objSource : sources) {
                Visit(objSource.Node, kDirtyRegister | kDirtyBelow);
            }
        }
    }
    constexpr std::size_t kLinksPerEvaluation = 16;
    NoteWork(nLinks / kLinksPerEvaluation);
}

void CNodeContext::Spread(std::span<const std::uint32_t> nodes, std::uint8_t nDirt, bool bSelf) {
    m_vecReached.clear();
    m_vecPending.clear();
    for (const std::uint32_t nNode : nodes) {
        if (bSelf) {
            Visit(nNode, nDirt);
        } else {
            m_vecReached.push_back(nNode);
            m_vecPending.push_back({nNode, nDirt});
            // The bits just written are known, so what overlaps with them has nothing to tell this node.
            m_vecVisited[nNode] = kDirtyValue;
        }
    }
    VisitParents();
    for (const std::uint32_t nReached : m_vecReached) {
        const bool bOnlyWritten = !bSelf && nReached == nodes.front();
        const std::uint8_t nVisited = std::exchange(m_vecVisited[nReached], std::uint8_t{0});
        DropCaches(nReached, bOnlyWritten ? static_cast<std::uint8_t>(nVisited & ~kDirtyValue) : nVisited);
        if (m_vecState[nReached].HasCallback) {
            m_vecTouched.push_back(nReached);
        }
    }
}

std::vector<std::uint32_t> CNodeContext::DependentsOf(std::uint32_t nNode) {
    m_vecReached.clear();
    m_vecPending.clear();
    Visit(nNode, kDirtyAll);
    VisitParents();
    for (const std::uint32_t nReached : m_vecReached) {
        m_vecVisited[nReached] = 0;
    }
    return m_vecReached;
}

void CEvaluation::CheckLimits(std::string_view strNode) {
    const bool bTooDeep = m_objContext.m_nEvaluationDepth > kMaxEvaluationDepth;
    if (!bTooDeep && m_objContext.m_nEvaluations <= kMaxEvaluations) {
        return;
    }
    --m_objContext.m_nEvaluationDepth;  // no destructor runs for what a constructor throws
    if (bTooDeep) {
        Throw<RuntimeException>("Node '" + std::string(strNode) + "': it stands on more than " +
                                std::to_string(kMaxEvaluationDepth) + " nodes, or on itself");
    }
    Throw<RuntimeException>("Node '" + std::string(strNode) + "': the operation needs more than " +
                            std::to_string(kMaxEvaluations) + " evaluations of nodes");
}

CChange::CChange(CNodeContext& objContext) : m_objContext(objContext) {
    m_objContext.m_objLock.Lock();
    ++m_objContext.m_nChangeDepth;
    m_nTouchedBefore = m_objContext.m_vecTouched.size();
}

CChange::~CChange() {
    if (m_bFinished) {
        return;
    }
    try {
        FireInside();
    } catch (...) {
        // The exception that is already on its way tells more.
    }
    Leave();
}

void CChange::Finish() {
    m_bFinished = true;
    try {
        FireInside();
    } catch (...) {
        m_pFirst = std::current_exception();
    }
    Leave();
    if (m_pFirst) {
        std::rethrow_exception(m_pFirst);
    }
}

void CChange::FireInside() {
    CNodeContext& objContext = m_objContext;
    if (objContext.m_nChangeDepth > objContext.m_nCallbackDepth + 1) {
        return;  // a part of a larger operation, which fires when it is done
    }
    if (objContext.m_vecTouched.size() == m_nTouchedBefore) {
        return;
    }
    auto itFirst = objContext.m_vecTouched.begin() + static_cast<std::ptrdiff_t>(m_nTouchedBefore);
    std::sort(itFirst, objContext.m_vecTouched.end());
    std::vector<CCallbackTable::Pin> vecInside;
    for (auto it = itFirst; it != objContext.m_vecTouched.end(); ++it) {
        if (it == itFirst || *it != *(it - 1)) {
            objContext.m_objCallbacks.Collect(*it, cbPostInsideLock, vecInside);
            objContext.m_objCallbacks.Collect(*it, cbPostOutsideLock, objContext.m_vecOutside);
        }
    }
    objContext.m_vecTouched.resize(m_nTouchedBefore);
    if (objContext.m_nCallbackDepth >= kMaxCallbackDepth) {
        Throw<RuntimeException>("Callbacks that write have called each other more than " +
                                std::to_string(kMaxCallbackDepth) + " times");
    }
    ++objContext.m_nCallbackDepth;
    FireAll(vecInside, m_pFirst);
    --objContext.m_nCallbackDepth;
}

void CChange::FireAll(const std::vector<CCallbackTable::Pin>& vecPin, std::exception_ptr& pFirst) {
    for (const CCallbackTable::Pin& pCallback : vecPin) {
        try {
            CCallbackTable::Run(*pCallback);
        } catch (...) {
            if (!pFirst) {
                pFirst = std::current_exception();
            }
        }
    }
}

void CChange::Leave() {
    CNodeContext& objContext = m_objContext;
    std::vector<CCallbackTable::Pin> vecOutside;
    if (--objContext.m_nChangeDepth == 0) {
        vecOutside.swap(objContext.m_vecOutside);
    }
    objContext.m_objLock.Unlock();
    FireAll(vecOutside, m_pFirst);
}

}  // namespace GenApi_3_0
