#pragma once

#include <cstdint>
#include <string>

#include "GenApi/RegisterNode.h"
#include "GenApi/StringValue.h"

namespace GenApi_3_0 {

/// A StringReg: a text in a register, which ends at its first zero byte or, without one, where the register ends.
class CStringRegNode : public CRegisterNode<CStringValue> {
public:
    using CRegisterNode::CRegisterNode;

    std::int64_t MaxLength() override { return Block().Length(); }

protected:
    std::string FetchText(bool bIgnoreCache) override;
    void StoreText(const std::string& strValue, bool bVerify) override;
};

}  // namespace GenApi_3_0
