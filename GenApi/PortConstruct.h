#pragma once

#include "GenApi/Port.h"

namespace GenApi_3_0 {

/// The port node of a node map, for those who put a port of their own behind it. `Read` and `Write` go to that port.
///
/// A node behind a port without implementation is not available. Whoever changes what lies behind an implementation
/// that stays (the next frame's chunks, the next event's data) calls `InvalidateNode` of the same node, found by
/// dynamic_cast to INode: that drops the caches and fires the callbacks of everything that stands on the port.
class IPortConstruct : virtual public IPort {
public:
    /// @param pPort  not owned; null disconnects. It must stay until it is replaced or the node map is destroyed.
    virtual void SetPortImpl(IPort* pPort) = 0;
    virtual IPort* GetPortImpl() const = 0;
    /// Whether the registers behind this port have the byte order opposite to what their nodes say.
    virtual EYesNo GetSwapEndianess() const = 0;
    /// The chunk's ID as the description writes it, in hexadecimal without prefix, or what `pChunkID` reads now.
    /// Empty if this is no chunk port.
    virtual gcstring GetChunkID() const = 0;
    /// The event's ID as the description writes it, in hexadecimal without prefix. Empty if this is no event port.
    virtual gcstring GetEventID() const = 0;
    /// Whether the description asks that a chunk's data be copied, since it is used after its buffer has gone.
    virtual bool IsChunkDataCached() const = 0;
};

}  // namespace GenApi_3_0
