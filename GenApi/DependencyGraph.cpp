#include "GenApi/DependencyGraph.h"

namespace GenApi_3_0 {

std::uint8_t SpreadOver(ELink eLink, std::uint8_t nDirt) {
    constexpr std::uint8_t kNone = 0;
    const bool bOwnValue = (nDirt & (kDirtyRegister | kDirtyValue)) != 0;
    const bool bValue = bOwnValue || (nDirt & kDirtyBytes) != 0;
    const bool bAccess = (nDirt & kDirtyAccess) != 0;
    const bool bLimits = (nDirt & kDirtyLimits) != 0;
    const auto Dirt = [](bool bSet, std::uint8_t nBits) { return bSet ? nBits : kNone; };
    const auto Join = [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a | b); };
    switch (eLink) {
        case ELink::Value:
            return Join(Dirt(bValue, kDirtyRegister), nDirt & (kDirtyAccess | kDirtyLimits));
        case ELink::Input:
        case ELink::Port:
            return Join(Dirt(bValue, kDirtyRegister), Dirt(bAccess, kDirtyAccess));
        case ELink::Member:
            return Join(Dirt(bValue || bLimits, kDirtyRegister), Dirt(bAccess, kDirtyAccess));
        case ELink::Limit:
            return Dirt(bValue, kDirtyLimits);
        case ELink::Access:
            return Dirt(bValue || bAccess, kDirtyAccess);
        case ELink::Invalidator:
            return Dirt(bValue, kDirtyRegister | kDirtyBelow);
        case ELink::Selector:
            return Dirt(bValue, kDirtyRegister);
        case ELink::Overlap:
            // The register's bytes are known: a write put them there, or they have been dropped already.
            return Dirt(bOwnValue, kDirtyValue);
        case ELink::Bytes:
            return Dirt(bOwnValue, kDirtyBytes);
        case ELink::Cell:
            return nDirt & kDirtyBytes;
        case ELink::Entry:
            return Dirt(bValue || bAccess, kDirtyLimits);
        case ELink::Copy:
        case ELink::Feature:
        case ELink::Mention:
            break;
    }
    return kNone;
}

void CDependencyGraph::Build(std::size_t nNodes) {
    m_objChildren.Fill(m_vecReference, nNodes, &REFERENCE::From, &REFERENCE::To);
    m_objParents.Fill(m_vecReference, nNodes, &REFERENCE::To, &REFERENCE::From);
    // An index of their own: a node that is invalidated has few of these, and may have thousands of other children.
    std::erase_if(m_vecReference, [](const REFERENCE& objReference) { return objReference.Kind != ELink::Value; });
    m_objSources.Fill(m_vecReference, nNodes, &REFERENCE::From, &REFERENCE::To);
    m_vecReference = {};
}

// A counting sort: it keeps the order among the references of one node.
void CDependencyGraph::ADJACENCY::Fill(const std::vector<REFERENCE>& vecReference, std::size_t nNodes,
                                       std::uint32_t REFERENCE::*pKey, std::uint32_t REFERENCE::*pOther) {
    First.assign(nNodes + 1, 0);
    for (const REFERENCE& objReference : vecReference) {
        ++First[objReference.*pKey + 1];
    }
    for (std::size_t i = 1; i <= nNodes; ++i) {
        First[i] += First[i - 1];
    }
    std::vector<std::uint32_t> vecNext(First.begin(), First.end() - 1);
    Links.resize(vecReference.size());
    for (const REFERENCE& objReference : vecReference) {
        Links[vecNext[objReference.*pKey]++] = {objReference.*pOther, objReference.Kind};
    }
}

}  // namespace GenApi_3_0
