#pragma once

#include <cstdint>
#include <vector>

#include "GenApi/Types.h"

namespace GenApi_3_0 {

/// The bytes of one register as last read or written, shared by all nodes that stand on it, so that each is read once,
/// and so that a node that changes some bits of a register that can't be read keeps what others wrote to the rest.
struct REGISTER_CELL {
    std::vector<std::uint8_t> Bytes;
    bool Valid = false;
    bool Readable = false;  ///< by one of the nodes at least
};

/// The part of a node that changes reach: flat, so that a change that touches thousands of nodes walks one array.
struct NODE_STATE {
    REGISTER_CELL* pCell = nullptr;
    EAccessMode Access = _UndefinedAccesMode;  ///< undefined: not cached
    bool ValueValid = false;                   ///< the node's value cache holds
    bool HasCallback = false;
};

}  // namespace GenApi_3_0
