#pragma once

#include <cstdint>

#include "GenApi/FloatValue.h"
#include "GenApi/IntegerValue.h"
#include "GenApi/NodeFormula.h"

namespace GenApi_3_0 {

/// An IntSwissKnife or a SwissKnife: a value computed from others, which can't be written.
/// @tparam Base   CIntegerValue or CFloatValue
/// @tparam Value  std::int64_t or double
template <class Base, class Value>
class CSwissKnife : public Base {
public:
    CSwissKnife(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : Base(objContext, objModel, nNode), m_objFormula(*this, m_objInputs) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    void Complete(CPropertyReader& objReader) override;

protected:
    EAccessMode SourceAccessMode() override { return m_objInputs.AreReadable() ? RO : NA; }
    Value Compute(bool bIgnoreCache) { return m_objFormula.Evaluate(bIgnoreCache); }
    [[noreturn]] void ThrowNotWritable() const;

private:
    CFormulaInputs m_objInputs;
    CNodeFormula<Value> m_objFormula;
};

/// An IntSwissKnife, computed in 64-bit integers.
class CIntSwissKnifeNode : public CSwissKnife<CIntegerValue, std::int64_t> {
public:
    using CSwissKnife::CSwissKnife;

protected:
    std::int64_t FetchInt(bool bIgnoreCache) override { return Compute(bIgnoreCache); }
    void StoreInt(std::int64_t /*nValue*/, bool /*bVerify*/) override { ThrowNotWritable(); }
};

/// A SwissKnife, computed in double.
class CSwissKnifeNode : public CSwissKnife<CFloatValue, double> {
public:
    using CSwissKnife::CSwissKnife;

protected:
    double FetchFloat(bool bIgnoreCache) override { return Compute(bIgnoreCache); }
    void StoreFloat(double /*fValue*/, bool /*bVerify*/) override { ThrowNotWritable(); }
};

}  // namespace GenApi_3_0
