#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "GenApi/NodeMap.h"

namespace GenApi_3_0 {

/// Tells the generic loader from loaders made for one camera.
struct CGeneric_XMLLoaderParams {};

/// Owns one node map and loads it. Not for several threads at once until it is loaded; then as the node map.
template <class TCameraParams>
class CNodeMapRefT {
public:
    explicit CNodeMapRefT(const gcstring& DeviceName = "Device") : m_strDeviceName(DeviceName) {}
    CNodeMapRefT(const CNodeMapRefT&) = delete;
    CNodeMapRefT& operator=(const CNodeMapRefT&) = delete;

    /// @throws RuntimeException  "Node map already created"; besides what CNodeMapFactory throws
    void _LoadXMLFromString(const gcstring& XMLData);
    /// @throws RuntimeException  the file can't be opened; besides as above
    void _LoadXMLFromFile(const gcstring& FileName);
    void _Destroy();

    bool _Connect(IPort* pPort, const gcstring& PortName) const;
    bool _Connect(IPort* pPort) const;

    INode* _GetNode(const gcstring& Name) const;
    INode* _FindNode(std::string_view strName) const;
    void _GetNodes(NodeList_t& Nodes) const;
    gcstring _GetDeviceName() const;
    void _InvalidateNodes() const;
    void _Poll(std::int64_t ElapsedTime) const;
    CLock& _GetLock() const;

    /// The node map, owned by this reference. Null until one is loaded.
    INodeMap* _Ptr = nullptr;

private:
    INodeMap& Loaded() const;

    gcstring m_strDeviceName;
    std::unique_ptr<INodeMap> m_pNodeMap;
};

extern template class CNodeMapRefT<CGeneric_XMLLoaderParams>;

using CNodeMapRef = CNodeMapRefT<CGeneric_XMLLoaderParams>;

}  // namespace GenApi_3_0
