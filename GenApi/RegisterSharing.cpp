#include "GenApi/RegisterSharing.h"

#include <algorithm>
#include <functional>
#include <tuple>

namespace GenApi_3_0 {

REGISTER_CELL* CRegisterSharing::CellOf(CNodeContext& objContext, const std::string& strKey) {
    REGISTER_CELL*& pCell = m_mapCell[strKey];
    if (pCell == nullptr) {
        pCell = &objContext.NewCell();
    }
    return pCell;
}

void CRegisterSharing::LinkOverlaps(CDependencyGraph& objGraph) {
    std::sort(m_vecUser.begin(), m_vecUser.end(), [](const USER& a, const USER& b) {
        const std::less<const REGISTER_CELL*> Before;
        return a.pCell != b.pCell ? Before(a.pCell, b.pCell)
                                  : std::tie(a.FirstBit, a.Node) < std::tie(b.FirstBit, b.Node);
    });
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

}  // namespace GenApi_3_0
