#pragma once

#include <cstdint>

#include "GenApi/NodeImpl.h"
#include "GenApi/PortConstruct.h"

namespace GenApi_3_0 {

/// A Port: the place where a user's port is put, which all registers of this node go through.
class CPortNode : public CNodeImpl, public IPortConstruct {
public:
    using CNodeImpl::CNodeImpl;

    // IPort
    void Read(void* pBuffer, std::int64_t Address, std::int64_t Length) override;
    void Write(const void* pBuffer, std::int64_t Address, std::int64_t Length) override;

    // IPortConstruct
    void SetPortImpl(IPort* pPort) override;
    IPort* GetPortImpl() const override;
    EYesNo GetSwapEndianess() const override { return m_bSwapEndianess ? Yes : No; }
    gcstring GetChunkID() const override;
    gcstring GetEventID() const override { return CNodeImpl::GetEventID(); }
    bool IsChunkDataCached() const override { return m_bCacheChunkData; }

    EInterfaceType GetPrincipalInterfaceType() const override { return intfIPort; }
    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    bool IsSwapped() const { return m_bSwapEndianess; }

protected:
    EAccessMode SourceAccessMode() override;

private:
    IPort& Connected() const;

    IPort* m_pPort = nullptr;  // guarded by the node map's lock
    CNodeImpl* m_pChunkID = nullptr;
    bool m_bSwapEndianess = false;
    bool m_bCacheChunkData = false;
};

}  // namespace GenApi_3_0
