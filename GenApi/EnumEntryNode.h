#pragma once

#include <cstdint>
#include <string_view>

#include "GenApi/EnumEntry.h"
#include "GenApi/NodeImpl.h"

namespace GenApi_3_0 {

/// An EnumEntry. Its number is fixed, so it can be read at most.
class CEnumEntryNode : public CNodeImpl, public IEnumEntry {
public:
    CEnumEntryNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode);

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;

    // With or without the lock: it never changes
    std::int64_t Value() const { return m_nValue; }
    std::string_view Symbolic() const { return m_strSymbolic; }
    std::int64_t ReadInt(bool /*bIgnoreCache*/) override { return m_nValue; }

    // IEnumEntry
    std::int64_t GetValue() override { return m_nValue; }
    gcstring GetSymbolic() const override { return gcstring(m_strSymbolic); }
    double GetNumericValue() override;
    bool IsSelfClearing() override;

    // IValue
    INode* GetNode() override { return this; }
    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    void FromString(const gcstring& ValueStr, bool Verify = true) override;
    bool IsValueCacheValid() const override { return true; }

    EInterfaceType GetPrincipalInterfaceType() const override { return intfIEnumEntry; }
    void* GetInterface(EInterfaceType eType) override {
        return eType == intfIEnumEntry ? static_cast<IEnumEntry*>(this) : nullptr;
    }

private:
    std::int64_t m_nValue = 0;
    std::string_view m_strSymbolic;
};

}  // namespace GenApi_3_0
