#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "GenApi/Integer.h"
#include "GenApi/NodeImpl.h"

namespace GenApi_3_0 {

/// What all nodes with an integer value share: the IInteger interface with its checks, and the cached value. The kinds
/// say where the value comes from and goes to.
class CIntegerValue : public CNodeImpl, public IInteger {
public:
    using CNodeImpl::CNodeImpl;

    // Numbers, with the lock held
    std::int64_t ReadInt(bool bIgnoreCache) override {
        return Cached(m_nValue, bIgnoreCache, [this, bIgnoreCache] { return FetchInt(bIgnoreCache); });
    }
    void WriteInt(std::int64_t nValue, bool bVerify) override;

    // IInteger
    void SetValue(std::int64_t Value, bool Verify = true) override;
    std::int64_t GetValue(bool Verify = false, bool IgnoreCache = false) override;
    std::int64_t GetMin() override;
    std::int64_t GetMax() override;
    EIncMode GetIncMode() override;
    std::int64_t GetInc() override;
    int64_autovector_t GetListOfValidValues(bool bounded = true) override;
    ERepresentation GetRepresentation() override;
    gcstring GetUnit() override;
    void ImposeMin(std::int64_t Value) override;
    void ImposeMax(std::int64_t Value) override;

    // IValue
    INode* GetNode() override { return this; }
    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    void FromString(const gcstring& ValueStr, bool Verify = true) override;
    bool IsValueCacheValid() const override;

    EInterfaceType GetPrincipalInterfaceType() const override { return intfIInteger; }
    void* GetInterface(EInterfaceType eType) override {
        return eType == intfIInteger ? static_cast<IInteger*>(this) : nullptr;
    }
    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;

protected:
    virtual std::int64_t FetchInt(bool bIgnoreCache) = 0;
    /// @param nValue  checked already if bVerify
    virtual void StoreInt(std::int64_t nValue, bool bVerify) = 0;
    virtual const std::vector<std::int64_t>* ValidValues() { return nullptr; }

private:
    struct LIMITS {
        std::int64_t Min;
        std::int64_t Max;
    };

    void CheckRange(std::int64_t nValue);
    [[noreturn]] void ThrowOutOfRange(std::int64_t nValue, const std::string& strWhy) const;
    LIMITS Limits();
    std::int64_t AtOrAbove(std::int64_t nImposed, std::int64_t nMin);
    LIMITS& Imposed();

    std::int64_t m_nValue = 0;
    ERepresentation m_eRepresentation = PureNumber;
    std::unique_ptr<LIMITS> m_pImposed;
};

}  // namespace GenApi_3_0
