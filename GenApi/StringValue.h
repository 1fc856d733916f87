#pragma once

#include <cstdint>
#include <string>

#include "GenApi/NodeImpl.h"
#include "GenApi/String.h"

namespace GenApi_3_0 {

/// What String and StringReg share: the IString interface with its checks, and the cached text.
class CStringValue : public CNodeImpl, public IString {
public:
    using CNodeImpl::CNodeImpl;

    // With the lock held
    const std::string& ReadText(bool bIgnoreCache) {
        return Cached(m_strValue, bIgnoreCache, [this, bIgnoreCache] { return FetchText(bIgnoreCache); });
    }
    void WriteText(const std::string& strValue, bool bVerify);
    /// In bytes.
    virtual std::int64_t MaxLength() = 0;

    // IString
    void SetValue(const gcstring& Value, bool Verify = true) override;
    gcstring GetValue(bool Verify = false, bool IgnoreCache = false) override;
    std::int64_t GetMaxLength() override;

    // IValue
    INode* GetNode() override { return this; }
    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override { return GetValue(Verify, IgnoreCache); }
    void FromString(const gcstring& ValueStr, bool Verify = true) override { SetValue(ValueStr, Verify); }
    bool IsValueCacheValid() const override;

    EInterfaceType GetPrincipalInterfaceType() const override { return intfIString; }
    void* GetInterface(EInterfaceType eType) override {
        return eType == intfIString ? static_cast<IString*>(this) : nullptr;
    }

protected:
    virtual std::string FetchText(bool bIgnoreCache) = 0;
    /// @param strValue  no longer than MaxLength
    virtual void StoreText(const std::string& strValue, bool bVerify) = 0;

private:
    std::string m_strValue;
};

}  // namespace GenApi_3_0
