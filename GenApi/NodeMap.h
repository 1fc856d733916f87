#pragma once

#include <cstdint>

#include "GenApi/Lock.h"
#include "GenApi/NodeVector.h"
#include "GenApi/Types.h"

namespace GenApi_3_0 {

class INode;
class IPort;

/// All nodes of one description. Made by CNodeMapFactory. Every operation may be called from any thread; the nodes
/// live as long as the map.
class INodeMap {
public:
    virtual ~INodeMap() = default;

    virtual void GetNodes(NodeList_t& Nodes) const = 0;
    /// Null if there is none of that name. A prefix `Std::` or `Cust::` is passed over.
    virtual INode* GetNode(const gcstring& Name) const = 0;
    virtual std::uint64_t GetNumNodes() const = 0;
    virtual void InvalidateNodes() const = 0;

    /// Puts a port behind the port node of that name.
    /// @param pPort  not owned; null disconnects
    /// @return false if the description has no such port node
    virtual bool Connect(IPort* pPort, const gcstring& PortName) const = 0;
    /// The same for the port node `Device`, or for the only one there is.
    virtual bool Connect(IPort* pPort) const = 0;

    virtual gcstring GetDeviceName() const = 0;
    /// Tells that time has passed: nodes whose polling time is over are read anew when next asked for.
    /// @param ElapsedTime  in milliseconds since the last call
    virtual void Poll(std::int64_t ElapsedTime) = 0;
    virtual CLock& GetLock() const = 0;

    // What the description says of itself.
    virtual gcstring GetModelName() const = 0;
    virtual gcstring GetVendorName() const = 0;
    virtual gcstring GetToolTip() const = 0;
    virtual gcstring GetStandardNameSpace() const = 0;
    /// major.minor.subminor
    virtual gcstring GetSchemaVersion() const = 0;
    virtual gcstring GetDeviceVersion() const = 0;
    virtual gcstring GetProductGuid() const = 0;
    virtual gcstring GetVersionGuid() const = 0;
};

}  // namespace GenApi_3_0
