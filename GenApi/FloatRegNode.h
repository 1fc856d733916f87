#pragma once

#include "GenApi/FloatValue.h"
#include "GenApi/RegisterNode.h"

namespace GenApi_3_0 {

/// A FloatReg: an IEEE number in a register of 4 or 8 bytes.
class CFloatRegNode : public CRegisterNode<CFloatValue> {
public:
    using CRegisterNode::CRegisterNode;

    void Complete(CPropertyReader& objReader) override;
    double MinFloat() override;
    double MaxFloat() override;

protected:
    double FetchFloat(bool bIgnoreCache) override;
    void StoreFloat(double fValue, bool bVerify) override;

private:
    void CheckLength(std::int64_t nLength) const;
    bool IsSingle() const;
};

}  // namespace GenApi_3_0
