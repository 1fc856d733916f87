#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "GenApi/IntegerValue.h"
#include "GenApi/ValueSource.h"

namespace GenApi_3_0 {

/// An Integer: a value of its own or another node's, with limits of its own or the other's.
class CIntegerNode : public CIntegerValue {
public:
    CIntegerNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : CIntegerValue(objContext, objModel, nNode), m_objSource(*this) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    std::int64_t MinInt() override;
    std::int64_t MaxInt() override;
    std::int64_t IncInt() override;
    gcstring GetUnit() override;

protected:
    EAccessMode SourceAccessMode() override { return m_objSource.AccessMode(); }
    CNodeImpl* ValueNode() const override { return m_objSource.FixedNode(); }
    std::int64_t FetchInt(bool bIgnoreCache) override { return m_objSource.Read(bIgnoreCache); }
    void StoreInt(std::int64_t nValue, bool bVerify) override { m_objSource.Write(nValue, bVerify); }
    const std::vector<std::int64_t>* ValidValues() override { return m_pValid.get(); }

private:
    CValueSource<std::int64_t> m_objSource;
    NUMBER_LIMITS<std::int64_t> m_objLimits;
    std::unique_ptr<std::vector<std::int64_t>> m_pValid;
};

}  // namespace GenApi_3_0
