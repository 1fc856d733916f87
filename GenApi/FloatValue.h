#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "GenApi/Float.h"
#include "GenApi/NodeImpl.h"

namespace GenApi_3_0 {

/// What all nodes with a floating-point value share: the IFloat interface with its checks, and the cached value. As an
/// integer such a node reads as the nearest one.
class CFloatValue : public CNodeImpl, public IFloat {
public:
    using CNodeImpl::CNodeImpl;

    // Numbers, with the lock held
    double ReadFloat(bool bIgnoreCache) override {
        return Cached(m_fValue, bIgnoreCache, [this, bIgnoreCache] { return FetchFloat(bIgnoreCache); });
    }
    std::int64_t ReadInt(bool bIgnoreCache) override;
    void WriteFloat(double fValue, bool bVerify) override;
    void WriteInt(std::int64_t nValue, bool bVerify) override { WriteFloat(static_cast<double>(nValue), bVerify); }
    double MinFloat() override;
    double MaxFloat() override;
    std::int64_t MinInt() override;
    std::int64_t MaxInt() override;

    // IFloat
    void SetValue(double Value, bool Verify = true) override;
    double GetValue(bool Verify = false, bool IgnoreCache = false) override;
    double GetMin() override;
    double GetMax() override;
    bool HasInc() override;
    EIncMode GetIncMode() override;
    double GetInc() override;
    double_autovector_t GetListOfValidValues(bool bounded = true) override;
    ERepresentation GetRepresentation() override;
    gcstring GetUnit() const override;
    EDisplayNotation GetDisplayNotation() const override;
    std::int64_t GetDisplayPrecision() const override;
    void ImposeMin(double Value) override;
    void ImposeMax(double Value) override;

    // IValue
    INode* GetNode() override { return this; }
    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    void FromString(const gcstring& ValueStr, bool Verify = true) override;
    bool IsValueCacheValid() const override;

    EInterfaceType GetPrincipalInterfaceType() const override { return intfIFloat; }
    void* GetInterface(EInterfaceType eType) override {
        return eType == intfIFloat ? static_cast<IFloat*>(this) : nullptr;
    }
    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;

protected:
    virtual double FetchFloat(bool bIgnoreCache) = 0;
    /// @param fValue  checked already if bVerify
    virtual void StoreFloat(double fValue, bool bVerify) = 0;
    virtual const std::vector<double>* ValidValues() { return nullptr; }

private:
    struct LIMITS {
        double Min;
        double Max;
    };

    void CheckRange(double fValue);
    [[noreturn]] void ThrowOutOfRange(double fValue, const std::string& strWhy) const;
    LIMITS Limits();
    LIMITS& Imposed();

    double m_fValue = 0;
    ERepresentation m_eRepresentation = PureNumber;
    std::unique_ptr<LIMITS> m_pImposed;
};

}  // namespace GenApi_3_0
