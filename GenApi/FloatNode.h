#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "GenApi/FloatValue.h"
#include "GenApi/ValueSource.h"

namespace GenApi_3_0 {

/// A Float: a value of its own or another node's, with limits of its own or the other's.
class CFloatNode : public CFloatValue {
public:
    CFloatNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : CFloatValue(objContext, objModel, nNode), m_objSource(*this) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    double MinFloat() override;
    double MaxFloat() override;
    double IncFloat() override;
    gcstring GetUnit() const override;

protected:
    EAccessMode SourceAccessMode() override { return m_objSource.AccessMode(); }
    CNodeImpl* ValueNode() const override { return m_objSource.FixedNode(); }
    double FetchFloat(bool bIgnoreCache) override { return m_objSource.Read(bIgnoreCache); }
    void StoreFloat(double fValue, bool bVerify) override { m_objSource.Write(fValue, bVerify); }
    const std::vector<double>* ValidValues() override { return m_pValid.get(); }

private:
    CValueSource<double> m_objSource;
    NUMBER_LIMITS<double> m_objLimits;
    std::unique_ptr<std::vector<double>> m_pValid;
};

}  // namespace GenApi_3_0
