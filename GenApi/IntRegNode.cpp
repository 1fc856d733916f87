#include "GenApi/IntRegNode.h"

#include <algorithm>
#include <limits>
#include <string>

#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

constexpr std::int64_t kMaxLength = 8;
constexpr std::int64_t kMaxBit = 63;

std::uint64_t MaskOf(unsigned nWidth) {
    return nWidth >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << nWidth) - 1;
}

}  // namespace

bool CIntRegNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    const auto Bit = [&] {
        const std::int64_t nBit = objReader.Integer(objProperty);
        if (nBit < 0 || nBit > kMaxBit) {
            objReader.Fail(objProperty, "is no bit of a register of up to 8 bytes");
        }
        m_bMasked = true;
        return static_cast<std::uint32_t>(nBit);
    };
    switch (objProperty.Tag) {
        case ETag::Sign:
            m_bSigned = objReader.Word<bool>(objProperty, {{"Signed", true}, {"Unsigned", false}});
            return true;
        case ETag::LSB:
            m_nLsb = Bit();
            return true;
        case ETag::MSB:
            m_nMsb = Bit();
            return true;
        case ETag::Bit:
            m_nLsb = m_nMsb = Bit();
            return true;
        default:
            return CRegisterNode::Apply(objProperty, objReader);
    }
}

void CIntRegNode::Complete(CPropertyReader& objReader) {
    const std::int64_t nLength = Block().ConstantLength();
    if (nLength > 0) {
        FieldIn(nLength);
    }
    CRegisterNode::Complete(objReader);
}

// In a register with the most significant byte first, bits are numbered from the most significant one.
CIntRegNode::FIELD CIntRegNode::FieldIn(std::int64_t nLength) const {
    if (nLength > kMaxLength) {
        Throw<RuntimeException>(Subject() + ": an integer can't stand in a register of " + std::to_string(nLength) +
                                " bytes");
    }
    const auto nBits = static_cast<std::uint32_t>(nLength) * 8;
    if (!m_bMasked) {
        return {0, nBits};
    }
    if (std::max(m_nLsb, m_nMsb) >= nBits) {
        Throw<RuntimeException>(Subject() + ": it shows bits beyond its register of " + std::to_string(nLength) +
                                " bytes");
    }
    const bool bFromTop = Block().IsBigEndian();
    const std::uint32_t nOne = bFromTop ? nBits - 1 - m_nLsb : m_nLsb;
    const std::uint32_t nOther = bFromTop ? nBits - 1 - m_nMsb : m_nMsb;
    return {std::min(nOne, nOther), std::max(nOne, nOther) - std::min(nOne, nOther) + 1};
}

std::pair<std::uint32_t, std::uint32_t> CIntRegNode::ShownBits() const {
    const std::int64_t nLength = Block().ConstantLength();
    if (nLength == 0) {
        return CRegisterNode::ShownBits();
    }
    const FIELD objField = FieldIn(nLength);
    return {objField.Shift, objField.Shift + objField.Width - 1};
}

std::span<std::uint8_t> CIntRegNode::BytesOf(Buffer& buffer) const {
    const std::int64_t nLength = Block().Length();
    FieldIn(nLength);
    return std::span(buffer).first(static_cast<std::size_t>(nLength));
}

std::uint64_t CIntRegNode::Decode(std::span<const std::uint8_t> bytes) const {
    std::uint64_t nPattern = 0;
    const bool bBigEndian = Block().IsBigEndian();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        nPattern = nPattern << 8U | bytes[bBigEndian ? i : bytes.size() - 1 - i];
    }
    return nPattern;
}

void CIntRegNode::Encode(std::uint64_t nPattern, std::span<std::uint8_t> bytes) const {
    const bool bBigEndian = Block().IsBigEndian();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[bBigEndian ? bytes.size() - 1 - i : i] = static_cast<std::uint8_t>(nPattern >> (8 * i));
    }
}

std::int64_t CIntRegNode::FetchInt(bool bIgnoreCache) {
    Buffer buffer{};
    const std::span<std::uint8_t> bytes = BytesOf(buffer);
    Block().Read(bytes, bIgnoreCache);
    const FIELD objField = FieldIn(static_cast<std::int64_t>(bytes.size()));
    std::uint64_t nPattern = (Decode(bytes) >> objField.Shift) & MaskOf(objField.Width);
    const bool bNegative = m_bSigned && (nPattern >> (objField.Width - 1) & 1U) != 0;
    if (bNegative) {
        nPattern |= ~MaskOf(objField.Width);
    }
    return static_cast<std::int64_t>(nPattern);
}

void CIntRegNode::StoreInt(std::int64_t nValue, bool /*bVerify*/) {
    Buffer buffer{};
    const std::span<std::uint8_t> bytes = BytesOf(buffer);
    const FIELD objField = FieldIn(static_cast<std::int64_t>(bytes.size()));
    const std::uint64_t nMask = MaskOf(objField.Width);
    const auto nPattern = static_cast<std::uint64_t>(nValue);
    // Both readings of the bits are let through, signed and not: limits are what bVerify has checked before.
    const bool bFits =
        (nPattern & ~nMask) == 0 || ((nPattern & ~nMask) == ~nMask && (nPattern >> (objField.Width - 1) & 1U) != 0);
    if (!bFits) {
        Throw<OutOfRangeException>(Subject() + ": the value " + FormatInteger(nValue) + " doesn't fit into its " +
                                   std::to_string(objField.Width) + " bits");
    }
    std::uint64_t nWhole = nPattern & nMask;
    if (objField.Width < bytes.size() * 8) {
        Block().ReadForChange(bytes);
        nWhole = (Decode(bytes) & ~(nMask << objField.Shift)) | (nWhole << objField.Shift);
    }
    Encode(nWhole, bytes);
    Block().Write(bytes);
}

std::int64_t CIntRegNode::MinInt() {
    if (!m_bSigned) {
        return 0;
    }
    const FIELD objField = FieldIn(Block().Length());
    return -static_cast<std::int64_t>(MaskOf(objField.Width - 1)) - 1;
}

std::int64_t CIntRegNode::MaxInt() {
    const FIELD objField = FieldIn(Block().Length());
    const bool bSignBit = m_bSigned || objField.Width >= 64;
    return static_cast<std::int64_t>(MaskOf(bSignBit ? objField.Width - 1 : objField.Width));
}

}  // namespace GenApi_3_0
