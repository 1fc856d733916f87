#pragma once

#include <cstdint>
#include <string>

#include "GenApi/StringValue.h"

namespace GenApi_3_0 {

/// A String: a text of its own or another node's.
class CStringNode : public CStringValue {
public:
    using CStringValue::CStringValue;

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    std::int64_t MaxLength() override;

    CNodeImpl* ValueNode() const override { return m_pSource; }

protected:
    EAccessMode SourceAccessMode() override { return m_pSource != nullptr ? m_pSource->AccessMode() : RW; }
    std::string FetchText(bool bIgnoreCache) override;
    void StoreText(const std::string& strValue, bool bVerify) override;

private:
    CStringValue* m_pSource = nullptr;
    std::string m_strOwn;
};

}  // namespace GenApi_3_0
