#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "GenApi/DescriptionModel.h"
#include "GenApi/NameTable.h"
#include "GenApi/NodeContext.h"
#include "GenApi/NodeImpl.h"
#include "GenApi/NodeMap.h"

namespace GenApi_3_0 {

class CPortNode;

/// The node map of one description: owns its text, its nodes and all that they share.
class CNodeMapImpl : public INodeMap {
public:
    /// @throws RuntimeException, PropertyException  as CNodeMapFactory tells
    CNodeMapImpl(std::string_view strText, const gcstring& strDeviceName);
    ~CNodeMapImpl() override;

    void GetNodes(NodeList_t& Nodes) const override;
    INode* GetNode(const gcstring& Name) const override;
    std::uint64_t GetNumNodes() const override { return m_nNodes; }
    void InvalidateNodes() const override;
    bool Connect(IPort* pPort, const gcstring& PortName) const override;
    bool Connect(IPort* pPort) const override;
    gcstring GetDeviceName() const override { return m_objContext.DeviceName(); }
    void Poll(std::int64_t ElapsedTime) override;
    CLock& GetLock() const override { return m_objContext.Lock(); }
    gcstring GetModelName() const override { return gcstring(m_pModel->ModelName); }
    gcstring GetVendorName() const override { return gcstring(m_pModel->VendorName); }
    gcstring GetToolTip() const override { return gcstring(m_pModel->ToolTip); }
    gcstring GetStandardNameSpace() const override { return gcstring(m_pModel->StandardNameSpace); }
    gcstring GetSchemaVersion() const override { return m_pModel->SchemaVersion; }
    gcstring GetDeviceVersion() const override { return m_pModel->DeviceVersion; }
    gcstring GetProductGuid() const override { return gcstring(m_pModel->ProductGuid); }
    gcstring GetVersionGuid() const override { return gcstring(m_pModel->VersionGuid); }

private:
    struct POLLED {
        std::uint32_t Node;
        std::int64_t Period;
        std::int64_t Elapsed;
    };

    CNodeImpl* Find(std::string_view strName) const;
    void CollectPolled();

    std::unique_ptr<DESCRIPTION_MODEL> m_pModel;
    mutable CNodeContext m_objContext;  // const operations change caches
    CNameTable m_objNames;
    std::vector<std::unique_ptr<CNodeImpl>> m_vecNode;
    std::uint64_t m_nNodes = 0;
    std::vector<POLLED> m_vecPolled;  // guarded by the lock
};

}  // namespace GenApi_3_0
