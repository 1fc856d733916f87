#pragma once

#include <cstdint>

#include "TLClass/TLClassMain/IBufferInitInfo.h"

namespace TLClass {

/// The frame description itself, empty at first.
class CBufferInitInfo final : public IBufferInitInfo {
public:
    std::uint64_t GetWidth() const override { return m_nWidth; }
    std::uint64_t SetWidth(std::uint64_t nWidth) override { return m_nWidth = nWidth; }
    std::uint64_t GetHeight() const override { return m_nHeight; }
    std::uint64_t SetHeight(std::uint64_t nHeight) override { return m_nHeight = nHeight; }
    std::uint64_t GetOffsetX() const override { return m_nOffsetX; }
    std::uint64_t SetOffsetX(std::uint64_t nOffsetX) override { return m_nOffsetX = nOffsetX; }
    std::uint64_t GetOffsetY() const override { return m_nOffsetY; }
    std::uint64_t SetOffsetY(std::uint64_t nOffsetY) override { return m_nOffsetY = nOffsetY; }
    std::uint64_t GetPayloadSize() const override { return m_nPayloadSize; }
    std::uint64_t SetPayloadSize(std::uint64_t nPayloadSize) override { return m_nPayloadSize = nPayloadSize; }
    std::uint64_t GetPixelFormat() const override { return m_nPixelFormat; }
    std::uint64_t SetPixelFormat(std::uint64_t nPixelFormat) override { return m_nPixelFormat = nPixelFormat; }
    std::uint8_t GetOverride() const override { return m_bOverride; }
    std::uint8_t SetOverride(std::uint8_t bOverride) override { return m_bOverride = bOverride; }

private:
    std::uint64_t m_nPayloadSize = 0;
    std::uint64_t m_nWidth = 0;
    std::uint64_t m_nHeight = 0;
    std::uint64_t m_nOffsetX = 0;
    std::uint64_t m_nOffsetY = 0;
    std::uint64_t m_nPixelFormat = 0;
    std::uint8_t m_bOverride = 0;
};

/// Copies all seven values.
void CopyBufferInitInfo(const IBufferInitInfo& objFrom, IBufferInitInfo& objTo);

}  // namespace TLClass
