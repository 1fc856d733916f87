#pragma once

#include <cstdint>

namespace TLClass {

/// The frames that an acquisition is started for. Width, height and offsets are in pixels, the payload size in bytes,
/// the pixel format is the 32-bit number of the naming convention.
///
/// The caller of the start owns it; whoever needs it longer copies it. No lock.
class IBufferInitInfo {
public:
    virtual std::uint64_t GetWidth() const = 0;
    // Each setter answers its argument.
    virtual std::uint64_t SetWidth(std::uint64_t nWidth) = 0;
    virtual std::uint64_t GetHeight() const = 0;
    virtual std::uint64_t SetHeight(std::uint64_t nHeight) = 0;
    virtual std::uint64_t GetOffsetX() const = 0;
    virtual std::uint64_t SetOffsetX(std::uint64_t nOffsetX) = 0;
    virtual std::uint64_t GetOffsetY() const = 0;
    virtual std::uint64_t SetOffsetY(std::uint64_t nOffsetY) = 0;
    virtual std::uint64_t GetPayloadSize() const = 0;
    virtual std::uint64_t SetPayloadSize(std::uint64_t nPayloadSize) = 0;
    virtual std::uint64_t GetPixelFormat() const = 0;
    virtual std::uint64_t SetPixelFormat(std::uint64_t nPixelFormat) = 0;
    /// Not 0: the record of each frame gets these values in place of the producer's.
    virtual std::uint8_t GetOverride() const = 0;
    virtual std::uint8_t SetOverride(std::uint8_t bOverride) = 0;

protected:
    ~IBufferInitInfo() = default;
};

}  // namespace TLClass
