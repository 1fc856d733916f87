#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "GenApi/NodeContext.h"
#include "GenApi/SeededHash.h"

namespace GenApi_3_0 {

/// Where a register lies whose description says so in numbers, in bytes of the port.
struct REGISTER_PLACE {
    std::uint32_t Port;  ///< the number of its node
    std::int64_t First;
    std::int64_t Last;
};

/// Finds out while loading which register nodes stand on the same bytes: those with the same place share one cell, and
/// of two places that overlap each learns of what is written to the other. Lives for one load.
class CRegisterSharing {
public:
    /// The cell of all registers with this key. The key says all that the place depends on: port, address, length.
    /// @param objPlace  nothing for a register whose place is computed
    REGISTER_CELL* CellOf(CNodeContext& objContext, const std::string& strKey,
                          const std::optional<REGISTER_PLACE>& objPlace);
    /// @param nFirstBit,nLastBit  the bits of the register that the node shows, counted from the least significant
    void Note(REGISTER_CELL* pCell, std::uint32_t nNode, std::uint32_t nFirstBit, std::uint32_t nLastBit) {
        m_vecUser.push_back({pCell, nNode, nFirstBit, nLastBit});
    }
    /// Notes in the graph which nodes hear of each other's changes. Once all are there.
    void Link(CDependencyGraph& objGraph);

private:
    struct USER {
        REGISTER_CELL* pCell;
        std::uint32_t Node;
        std::uint32_t FirstBit;
        std::uint32_t LastBit;
    };
    struct PLACED_CELL {
        REGISTER_PLACE Place;
        REGISTER_CELL* pCell;
        std::size_t FirstUser = 0;  // in m_vecUser, once that is sorted
        std::size_t EndUser = 0;
        bool IsHearing = false;  // its first user tells the others already
    };

    void LinkBits(CDependencyGraph& objGraph) const;
    void FindUsers();
    void LinkBytes(CDependencyGraph& objGraph);
    void LetHear(CDependencyGraph& objGraph, const PLACED_CELL& objFrom, PLACED_CELL& objTo);

    std::unordered_map<std::string, REGISTER_CELL*, CSeededHash> m_mapCell;
    std::vector<PLACED_CELL> m_vecPlaced;
    std::vector<USER> m_vecUser;
    std::size_t m_nByteLinks = 0;
};

}  // namespace GenApi_3_0
