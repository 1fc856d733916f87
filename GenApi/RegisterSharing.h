#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "GenApi/NodeContext.h"
#include "GenApi/SeededHash.h"

namespace GenApi_3_0 {

/// Finds out while loading which register nodes stand on the same bytes, so that they share one cell. Lives for one
/// load.
class CRegisterSharing {
public:
    /// The cell of all registers with this key. The key says all that the place depends on: port, address, length.
    REGISTER_CELL* CellOf(CNodeContext& objContext, const std::string& strKey);
    /// @param nFirstBit,nLastBit  the bits of the register that the node shows, counted from the least significant
    void Note(REGISTER_CELL* pCell, std::uint32_t nNode, std::uint32_t nFirstBit, std::uint32_t nLastBit) {
        m_vecUser.push_back({pCell, nNode, nFirstBit, nLastBit});
    }
    /// Notes in the graph which nodes show some of the same bits. They are linked in a ring, so that the number of
    /// links stays that of the nodes.
    void LinkOverlaps(CDependencyGraph& objGraph);

private:
    struct USER {
        REGISTER_CELL* pCell;
        std::uint32_t Node;
        std::uint32_t FirstBit;
        std::uint32_t LastBit;
    };

    std::unordered_map<std::string, REGISTER_CELL*, CSeededHash> m_mapCell;
    std::vector<USER> m_vecUser;
};

}  // namespace GenApi_3_0
