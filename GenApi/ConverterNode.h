#pragma once

#include <cstdint>

#include "GenApi/ConverterFormulas.h"
#include "GenApi/FloatValue.h"
#include "GenApi/IntegerValue.h"

namespace GenApi_3_0 {

/// An IntConverter: another node's value seen through formulas in 64-bit integers.
class CIntConverterNode : public CIntegerValue {
public:
    CIntConverterNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : CIntegerValue(objContext, objModel, nNode), m_objFormulas(*this) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    void Complete(CPropertyReader& objReader) override;
    std::int64_t MinInt() override;
    std::int64_t MaxInt() override;
    std::int64_t IncInt() override;

    CNodeImpl* ValueNode() const override { return m_objFormulas.ValueNode(); }

protected:
    EAccessMode SourceAccessMode() override { return m_objFormulas.AccessMode(); }
    std::int64_t FetchInt(bool bIgnoreCache) override { return m_objFormulas.Read(bIgnoreCache); }
    void StoreInt(std::int64_t nValue, bool bVerify) override { m_objFormulas.Write(nValue, bVerify); }

private:
    CConverterFormulas<std::int64_t> m_objFormulas;
};

/// A Converter: another node's value seen through formulas in double.
class CConverterNode : public CFloatValue {
public:
    CConverterNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : CFloatValue(objContext, objModel, nNode), m_objFormulas(*this) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    void Complete(CPropertyReader& objReader) override;
    double MinFloat() override;
    double MaxFloat() override;
    double IncFloat() override;

    CNodeImpl* ValueNode() const override { return m_objFormulas.ValueNode(); }

protected:
    EAccessMode SourceAccessMode() override { return m_objFormulas.AccessMode(); }
    double FetchFloat(bool bIgnoreCache) override { return m_objFormulas.Read(bIgnoreCache); }
    void StoreFloat(double fValue, bool bVerify) override { m_objFormulas.Write(fValue, bVerify); }

private:
    CConverterFormulas<double> m_objFormulas;
};

}  // namespace GenApi_3_0
