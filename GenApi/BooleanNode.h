#pragma once

#include <cstdint>

#include "GenApi/Boolean.h"
#include "GenApi/NodeImpl.h"
#include "GenApi/ValueSource.h"

namespace GenApi_3_0 {

/// A Boolean: one number stands for on, another for off. As a number among nodes it is 1 or 0.
class CBooleanNode : public CNodeImpl, public IBoolean {
public:
    CBooleanNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : CNodeImpl(objContext, objModel, nNode), m_objSource(*this) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;

    // Numbers, with the lock held
    std::int64_t ReadInt(bool bIgnoreCache) override;
    void WriteInt(std::int64_t nValue, bool bVerify) override;
    std::int64_t MinInt() override { return 0; }
    std::int64_t MaxInt() override { return 1; }

    // IBoolean
    void SetValue(bool Value, bool Verify = true) override;
    bool GetValue(bool Verify = false, bool IgnoreCache = false) override;

    // IValue
    INode* GetNode() override { return this; }
    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    void FromString(const gcstring& ValueStr, bool Verify = true) override;
    bool IsValueCacheValid() const override;

    EInterfaceType GetPrincipalInterfaceType() const override { return intfIBoolean; }
    void* GetInterface(EInterfaceType eType) override {
        return eType == intfIBoolean ? static_cast<IBoolean*>(this) : nullptr;
    }

protected:
    EAccessMode SourceAccessMode() override { return m_objSource.AccessMode(); }
    CNodeImpl* ValueNode() const override { return m_objSource.FixedNode(); }

private:
    CValueSource<std::int64_t> m_objSource;
    CNumberRef<std::int64_t> m_objOn{std::int64_t{1}};
    CNumberRef<std::int64_t> m_objOff{std::int64_t{0}};
    std::int64_t m_nValue = 0;  // cached, as the source has it
};

}  // namespace GenApi_3_0
