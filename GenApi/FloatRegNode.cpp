#include "GenApi/FloatRegNode.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <string>

#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

void TurnIf(bool bTurn, std::span<std::uint8_t> bytes) {
    if (bTurn) {
        std::reverse(bytes.begin(), bytes.end());
    }
}

}  // namespace

void CFloatRegNode::CheckLength(std::int64_t nLength) const {
    if (nLength != sizeof(float) && nLength != sizeof(double)) {
        GenICam_3_0::Throw<GenICam_3_0::RuntimeException>(
            Subject() + ": a floating-point number can't stand in a register of " + std::to_string(nLength) + " bytes");
    }
}

void CFloatRegNode::Complete(CPropertyReader& objReader) {
    if (Block().ConstantLength() != 0) {
        CheckLength(Block().ConstantLength());
    }
    CRegisterNode::Complete(objReader);
}

bool CFloatRegNode::IsSingle() const {
    const std::int64_t nLength = Block().Length();
    CheckLength(nLength);
    return nLength == sizeof(float);
}

double CFloatRegNode::FetchFloat(bool bIgnoreCache) {
    std::array<std::uint8_t, sizeof(double)> buffer{};
    const bool bSingle = IsSingle();
    const auto bytes = std::span(buffer).first(bSingle ? sizeof(float) : sizeof(double));
    Block().Read(bytes, bIgnoreCache);
    TurnIf(Block().IsBigEndian() == (std::endian::native == std::endian::little), bytes);
    if (bSingle) {
        float fSingle = 0;
        std::memcpy(&fSingle, bytes.data(), sizeof(fSingle));
        return static_cast<double>(fSingle);
    }
    double fDouble = 0;
    std::memcpy(&fDouble, bytes.data(), sizeof(fDouble));
    return fDouble;
}

void CFloatRegNode::StoreFloat(double fValue, bool /*bVerify*/) {
    std::array<std::uint8_t, sizeof(double)> buffer{};
    const bool bSingle = IsSingle();
    const auto bytes = std::span(buffer).first(bSingle ? sizeof(float) : sizeof(double));
    if (bSingle) {
        if (std::isfinite(fValue) && std::abs(fValue) > static_cast<double>(std::numeric_limits<float>::max())) {
            GenICam_3_0::Throw<GenICam_3_0::OutOfRangeException>(Subject() + ": the value " + FormatFloat(fValue) +
                                                                 " doesn't fit into 4 bytes");
        }
        const auto fSingle = static_cast<float>(fValue);
        std::memcpy(bytes.data(), &fSingle, sizeof(fSingle));
    } else {
        std::memcpy(bytes.data(), &fValue, sizeof(fValue));
    }
    TurnIf(Block().IsBigEndian() == (std::endian::native == std::endian::little), bytes);
    Block().Write(bytes);
}

double CFloatRegNode::MinFloat() {
    return -MaxFloat();
}

double CFloatRegNode::MaxFloat() {
    return IsSingle() ? static_cast<double>(std::numeric_limits<float>::max()) : std::numeric_limits<double>::max();
}

}  // namespace GenApi_3_0
