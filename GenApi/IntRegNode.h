#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <utility>

#include "GenApi/IntegerValue.h"
#include "GenApi/RegisterNode.h"

namespace GenApi_3_0 {

/// An IntReg, a MaskedIntReg or a StructEntry: an integer in a register of up to 8 bytes, or in some bits of one.
class CIntRegNode : public CRegisterNode<CIntegerValue> {
public:
    using CRegisterNode::CRegisterNode;

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;
    void Complete(CPropertyReader& objReader) override;
    std::int64_t MinInt() override;
    std::int64_t MaxInt() override;

protected:
    std::int64_t FetchInt(bool bIgnoreCache) override;
    void StoreInt(std::int64_t nValue, bool bVerify) override;
    std::pair<std::uint32_t, std::uint32_t> ShownBits() const override;

private:
    /// Bits counted from the least significant, whatever the byte order.
    struct FIELD {
        unsigned Shift = 0;
        unsigned Width = 64;
    };
    using Buffer = std::array<std::uint8_t, 8>;

    FIELD FieldIn(std::int64_t nLength) const;
    std::span<std::uint8_t> BytesOf(Buffer& buffer) const;
    std::uint64_t Decode(std::span<const std::uint8_t> bytes) const;
    void Encode(std::uint64_t nPattern, std::span<std::uint8_t> bytes) const;

    bool m_bSigned = false;
    bool m_bMasked = false;
    std::uint32_t m_nLsb = 0;  // as the description counts them
    std::uint32_t m_nMsb = 0;
};

}  // namespace GenApi_3_0
