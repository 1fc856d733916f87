#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "GenApi/Enumeration.h"
#include "GenApi/NodeImpl.h"
#include "GenApi/ValueSource.h"

namespace GenApi_3_0 {

class CEnumEntryNode;

/// An Enumeration: a number with names for the values that it can take.
class CEnumerationNode : public CNodeImpl, public IEnumeration {
public:
    CEnumerationNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : CNodeImpl(objContext, objModel, nNode), m_objSource(*this) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    /// While loading, in the order of the description.
    void AddEntry(CEnumEntryNode* pEntry) { m_vecEntry.push_back(pEntry); }
    void Complete(CPropertyReader& objReader) override;

    // Numbers, with the lock held
    std::int64_t ReadInt(bool bIgnoreCache) override;
    void WriteInt(std::int64_t nValue, bool bVerify) override;
    std::int64_t MinInt() override;
    std::int64_t MaxInt() override;
    std::int64_t EntryValue(std::string_view strSymbolic) override;

    // IEnumeration
    void GetSymbolics(StringList_t& Symbolics) override;
    void GetEntries(NodeList_t& Entries) override;
    void SetIntValue(std::int64_t Value, bool Verify = true) override;
    std::int64_t GetIntValue(bool Verify = false, bool IgnoreCache = false) override;
    IEnumEntry* GetEntryByName(const gcstring& Symbolic) override;
    IEnumEntry* GetEntry(std::int64_t IntValue) override;
    IEnumEntry* GetCurrentEntry(bool Verify = false, bool IgnoreCache = false) override;

    // IValue
    INode* GetNode() override { return this; }
    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    void FromString(const gcstring& ValueStr, bool Verify = true) override;
    bool IsValueCacheValid() const override;

    EInterfaceType GetPrincipalInterfaceType() const override { return intfIEnumeration; }
    void* GetInterface(EInterfaceType eType) override {
        return eType == intfIEnumeration ? static_cast<IEnumeration*>(this) : nullptr;
    }

protected:
    EAccessMode SourceAccessMode() override { return m_objSource.AccessMode(); }
    CNodeImpl* ValueNode() const override { return m_objSource.FixedNode(); }

private:
    /// Of several with that value the first that is available, if one is. With the lock held.
    CEnumEntryNode* EntryOf(std::int64_t nValue) const;
    CEnumEntryNode* EntryNamed(std::string_view strSymbolic) const;
    /// @throws OutOfRangeException  there is none
    CEnumEntryNode& RequireEntry(std::int64_t nValue) const;
    /// @throws AccessException  it isn't available
    void RequireAvailable(CEnumEntryNode& objEntry) const;
    bool ClearsItself(std::int64_t nValue) const;

    CValueSource<std::int64_t> m_objSource;
    std::vector<CEnumEntryNode*> m_vecEntry;
    std::int64_t m_nValue = 0;     // cached
    bool m_bSelfClearing = false;  // one of the entries is
};

}  // namespace GenApi_3_0
