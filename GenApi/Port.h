#pragma once

#include <cstdint>

#include "GenApi/Base.h"

namespace GenApi_3_0 {

/// Registers somewhere: a camera, a module of a producer, a chunk, an event. The user implements it and connects it to
/// a node map, which calls it with the node map's lock held, on whichever thread uses a feature. What it throws passes
/// through the node map unchanged.
class IPort : virtual public IBase {
public:
    /// @param Address  in bytes, 0 or more
    /// @param Length   in bytes; all of them are filled or it throws
    virtual void Read(void* pBuffer, std::int64_t Address, std::int64_t Length) = 0;
    virtual void Write(const void* pBuffer, std::int64_t Address, std::int64_t Length) = 0;
};

}  // namespace GenApi_3_0
