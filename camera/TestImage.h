#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "gev/PixelFormat.h"

namespace camera {

/// What an image shows. The numbers are those of the feature TestPattern.
enum class ETestPattern : std::uint32_t {
    Off = 0,  ///< black
    GreyHorizontalRamp = 1,
    GreyVerticalRamp = 2,
    GreyDiagonalRampMoving = 3,
};

/// What the images of a stream have in common.
struct IMAGE_FORMAT {
    std::uint32_t Width = 0;   ///< pixels, even
    std::uint32_t Height = 0;  ///< lines
    gev::EPixelFormat PixelFormat = gev::EPixelFormat::Mono8;
    ETestPattern Pattern = ETestPattern::GreyDiagonalRampMoving;
    bool ReverseX = false;  ///< mirrors the ramps; numbers stay legible

    friend bool operator==(const IMAGE_FORMAT&, const IMAGE_FORMAT&) = default;
};

/// Whether images of this format can be made.
bool IsPossible(const IMAGE_FORMAT& objFormat);

/// Bytes of an image.
std::size_t GetImageSize(const IMAGE_FORMAT& objFormat);

/// Makes test images, which are a function of the frame number and the format alone.
///
/// The moving pattern has the brightness x + y + frame number, modulo 256, spread over the depth of the pixel. Red,
/// green and blue are 0, 85 and 170 steps further on, in RGB images and on Bayer filters alike. The first lines show
/// the frame number as a row of bits, the highest one left: white pairs of columns are ones. Below it stands in
/// digits, where there is room.
///
/// Allocates when it is made and never again. Not for two threads at once.
class CTestImage {
public:
    /// @throws std::invalid_argument  for a format that isn't possible
    explicit CTestImage(const IMAGE_FORMAT& objFormat);

    /// Bytes of an image.
    [[nodiscard]] std::size_t GetSize() const { return m_nLine * m_objFormat.Height; }

    /// @param arrImage  GetSize() bytes, every one of which is written
    void Draw(std::uint64_t nFrame, std::span<std::byte> arrImage) const;

    /// The lowest bits of the frame number, as the image shows it in its first line: 32, or as many as the image has
    /// pairs of columns.
    /// @param arrImage  one line at least
    [[nodiscard]] std::uint32_t ReadFrameNumber(std::span<const std::byte> arrImage) const;

private:
    [[nodiscard]] std::uint32_t GetBitCount() const;
    [[nodiscard]] std::size_t GetBitPairs() const;
    void DrawRamp(std::uint64_t nFrame, std::span<std::byte> arrImage) const;
    void DrawBits(std::uint64_t nFrame, std::span<std::byte> arrImage) const;
    void DrawDigits(std::uint64_t nFrame, std::span<std::byte> arrImage) const;
    /// Makes pairs of columns white or black.
    void Paint(std::span<std::byte> arrImage, std::size_t nLine, std::size_t nFirstPair, std::size_t nPairs,
               bool bWhite) const;

    IMAGE_FORMAT m_objFormat;
    std::size_t m_nPair;  // bytes of two pixels
    std::size_t m_nLine;  // bytes of a line
    // Ramps of a line and a period, out of which each line is cut: by the line's parity, which counts on Bayer filters,
    // and by the parity of the place where the cut begins, as pairs of pixels can't be cut.
    std::array<std::array<std::vector<std::byte>, 2>, 2> m_arrRamp;
    std::array<std::byte, 8> m_arrWhite{};  // a pair
};

}  // namespace camera
