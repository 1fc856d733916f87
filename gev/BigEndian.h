#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace gev {

/// Reads an unsigned number whose highest byte comes first. The caller has checked that it lies inside the span.
template <class Value>
constexpr Value GetBig(std::span<const std::byte> arrBytes, std::size_t nOffset) {
    Value nValue = 0;
    for (const std::byte nByte : arrBytes.subspan(nOffset, sizeof(Value))) {
        nValue = static_cast<Value>(static_cast<std::uint64_t>(nValue) << 8 | std::to_integer<std::uint64_t>(nByte));
    }
    return nValue;
}

constexpr std::uint16_t Get16(std::span<const std::byte> arrBytes, std::size_t nOffset) {
    return GetBig<std::uint16_t>(arrBytes, nOffset);
}

constexpr std::uint32_t Get32(std::span<const std::byte> arrBytes, std::size_t nOffset) {
    return GetBig<std::uint32_t>(arrBytes, nOffset);
}

constexpr std::uint64_t Get64(std::span<const std::byte> arrBytes, std::size_t nOffset) {
    return GetBig<std::uint64_t>(arrBytes, nOffset);
}

/// Writes an unsigned number, highest byte first. The caller has checked that it fits the span.
template <class Value>
constexpr void PutBig(std::span<std::byte> arrBytes, std::size_t nOffset, Value nValue) {
    const auto arrPlace = arrBytes.subspan(nOffset, sizeof(Value));
    for (std::size_t i = 0; i < sizeof(Value); ++i) {
        // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): the analyser goes round once too often
        arrPlace[i] = static_cast<std::byte>(nValue >> 8 * (sizeof(Value) - 1 - i) & 0xFF);
    }
}

constexpr void Put16(std::span<std::byte> arrBytes, std::size_t nOffset, std::uint16_t nValue) {
    PutBig(arrBytes, nOffset, nValue);
}

constexpr void Put32(std::span<std::byte> arrBytes, std::size_t nOffset, std::uint32_t nValue) {
    PutBig(arrBytes, nOffset, nValue);
}

constexpr void Put64(std::span<std::byte> arrBytes, std::size_t nOffset, std::uint64_t nValue) {
    PutBig(arrBytes, nOffset, nValue);
}

}  // namespace gev
