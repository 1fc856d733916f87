#pragma once

#include "GenApi/NodeImpl.h"
#include "GenApi/RegisterNode.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {

/// The value of a Register: bytes without a meaning known here. Below CRegisterNode it completes a Register node.
class CBytesValue : public CNodeImpl, virtual public IValue {
public:
    using CNodeImpl::CNodeImpl;

    INode* GetNode() override { return this; }
    bool IsValueCacheValid() const override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIRegister; }
};

/// A Register. As text its bytes are hexadecimal behind 0x, two digits each.
class CBytesNode : public CRegisterNode<CBytesValue> {
public:
    using CRegisterNode::CRegisterNode;

    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    void FromString(const gcstring& ValueStr, bool Verify = true) override;
};

}  // namespace GenApi_3_0
