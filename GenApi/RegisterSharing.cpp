#include "GenApi/RegisterSharing.h"

#include <algorithm>
#include <functional>
#include <tuple>
#include <utility>

#include "GenApi/NodeMapLimits.h"

namespace GenApi_3_0 {

REGISTER_CELL* CRegisterSharing::CellOf(CNodeContext& objContext, const std::string& strKey,
                                        const std::optional<REGISTER_PLACE>& objPlace) {
    REGISTER_CELL*& pCell = m_mapCell[strKey];
    if (pCell == nullptr) {
        pCell = &objContext.NewCell();
        if (objPlace) {
            m_vecPlaced.push_back({*objPlace, pCell});
        }
    }
    return pCell;
}

void CRegisterSharing::Link(CDependencyGraph& objGraph) {
    std::sort(m_vecUser.begin(), m_vecUser.end(), [](const USER& a, const USER& b) {
        const std::less<const REGISTER_CELL*> Before;
        return a.pCell != b.pCell ? Before(a.pCell, b.pCell)
                                  : std::tie(a.FirstBit, a.Node) < std::tie(b.FirstBit, b.Node);
    });
    LinkBits(objGraph);
    FindUsers();
    LinkBytes(objGraph);
}

// Nodes that show some of the same bits are linked in a ring, so that the number of links stays that of the nodes.
void CRegisterSharing::LinkBits(CDependencyGraph& objGraph) const {
    std::size_t nFirst = 0;
    while (nFirst < m_vecUser.size()) {
        std::uint32_t nLastBit = m_vecUser[nFirst].LastBit;
        std::size_t nEnd = nFirst + 1;
        while (nEnd < m_vecUser.size() && m_vecUser[nEnd].pCell == m_vecUser[nFirst].pCell &&
               m_vecUser[nEnd].FirstBit <= nLastBit) {
            nLastBit = std::max(nLastBit, m_vecUser[nEnd].LastBit);
            ++nEnd;
        }
        for (std::size_t i = nFirst; nEnd - nFirst > 1 && i < nEnd; ++i) {
            const std::size_t nNext = i + 1 < nEnd ? i + 1 : nFirst;
            objGraph.Add(m_vecUser[nNext].Node, m_vecUser[i].Node, ELink::Overlap);
        }
        nFirst = nEnd;
    }
}

void CRegisterSharing::FindUsers() {
    for (PLACED_CELL& objCell : m_vecPlaced) {
        const auto [itFirst, itEnd] = std::equal_range(
            m_vecUser.begin(), m_vecUser.end(), USER{objCell.pCell, 0, 0, 0},
            [](const USER& a, const USER& b) { return std::less<const REGISTER_CELL*>()(a.pCell, b.pCell); });
        objCell.FirstUser = static_cast<std::size_t>(itFirst - m_vecUser.begin());
        objCell.EndUser = static_cast<std::size_t>(itEnd - m_vecUser.begin());
    }
}

// In the order of their first bytes, a register overlaps with those behind it that begin before it ends.
void CRegisterSharing::LinkBytes(CDependencyGraph& objGraph) {
    std::sort(m_vecPlaced.begin(), m_vecPlaced.end(), [](const PLACED_CELL& a, const PLACED_CELL& b) {
        return std::tie(a.Place.Port, a.Place.First, a.Place.Last) <
               std::tie(b.Place.Port, b.Place.First, b.Place.Last);
    });
    for (std::size_t i = 0; i < m_vecPlaced.size(); ++i) {
        const REGISTER_PLACE& objPlace = m_vecPlaced[i].Place;
        for (std::size_t j = i + 1; j < m_vecPlaced.size() && m_vecPlaced[j].Place.Port == objPlace.Port &&
                                    m_vecPlaced[j].Place.First <= objPlace.Last;
             ++j) {
            if (m_nByteLinks > kMaxByteLinks) {
                return;
            }
            LetHear(objGraph, m_vecPlaced[i], m_vecPlaced[j]);
            LetHear(objGraph, m_vecPlaced[j], m_vecPlaced[i]);
        }
    }
}

/// Lets all users of one cell hear of what the users of another write. The first one hears it and tells the rest, so
/// that the number of links is the sum of the users, not the product.
void CRegisterSharing::LetHear(CDependencyGraph& objGraph, const PLACED_CELL& objFrom, PLACED_CELL& objTo) {
    const std::uint32_t nHearing = m_vecUser[objTo.FirstUser].Node;
    for (std::size_t i = objFrom.FirstUser; i < objFrom.EndUser; ++i) {
        objGraph.Add(nHearing, m_vecUser[i].Node, ELink::Bytes);
    }
    m_nByteLinks += objFrom.EndUser - objFrom.FirstUser;
    if (std::exchange(objTo.IsHearing, true)) {
        return;
    }
    for (std::size_t i = objTo.FirstUser + 1; i < objTo.EndUser; ++i) {
        objGraph.Add(m_vecUser[i].Node, nHearing, ELink::Cell);
    }
}

}  // namespace GenApi_3_0
