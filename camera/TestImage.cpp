#include "camera/TestImage.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace camera {
namespace {

using gev::EPixelFormat;

constexpr std::size_t kPeriod = 256;  // of all ramps, in pixels
constexpr std::size_t kColours = 3;
constexpr std::array<std::uint32_t, kColours> kColourSteps = {0, 85, 170};  // red, green, blue

constexpr std::uint32_t kMostBits = 32;          // of the frame number, in the first lines
constexpr std::uint32_t kLinesOfBits = 64;       // of these is one line of bits
constexpr std::uint32_t kColumnsOfDigits = 256;  // so many columns make the digits' dots two columns wider

// Digits of 3 times 5 dots, line by line, the highest bit left above.
constexpr std::size_t kDigitColumns = 3;
constexpr std::size_t kDigitLines = 5;
constexpr std::array<std::uint16_t, 10> kDigits = {
    0b111'101'101'101'111, 0b010'110'010'010'111, 0b111'001'111'100'111, 0b111'001'111'001'111, 0b101'101'111'001'001,
    0b111'100'111'001'111, 0b111'100'111'101'111, 0b111'001'010'010'010, 0b111'101'111'101'111, 0b111'101'111'001'111};

/// Two pixels side by side, each with the brightness of its colours out of 256; grey formats look at the first alone.
using PAIR = std::array<std::array<std::uint32_t, kColours>, 2>;

enum class EPacking : std::uint8_t { None, Bytes, Words, Packed10, Packed12, Colours };

struct LAYOUT {
    EPacking Packing;
    std::uint32_t Depth;  // bits
};

LAYOUT GetLayout(EPixelFormat nFormat) {
    switch (nFormat) {
        case EPixelFormat::Mono8:
        case EPixelFormat::BayerGR8:
        case EPixelFormat::BayerRG8:
        case EPixelFormat::BayerGB8:
        case EPixelFormat::BayerBG8:
            return {EPacking::Bytes, 8};
        case EPixelFormat::Mono10:
            return {EPacking::Words, 10};
        case EPixelFormat::Mono12:
        case EPixelFormat::BayerRG12:
            return {EPacking::Words, 12};
        case EPixelFormat::Mono14:
            return {EPacking::Words, 14};
        case EPixelFormat::Mono16:
            return {EPacking::Words, 16};
        case EPixelFormat::Mono10Packed:
            return {EPacking::Packed10, 10};
        case EPixelFormat::Mono12Packed:
            return {EPacking::Packed12, 12};
        case EPixelFormat::RGB8:
            return {EPacking::Colours, 8};
    }
    return {EPacking::None, 0};
}

/// The index in kColourSteps of what a Bayer filter lets through there; 0 for formats without one.
std::size_t GetFilter(EPixelFormat nFormat, std::size_t nColumnParity, std::size_t nLineParity) {
    // Where red stands, as column and line of a square of four; blue stands across.
    std::pair<std::size_t, std::size_t> objRed;
    switch (nFormat) {
        case EPixelFormat::BayerRG8:
        case EPixelFormat::BayerRG12:
            objRed = {0, 0};
            break;
        case EPixelFormat::BayerGR8:
            objRed = {1, 0};
            break;
        case EPixelFormat::BayerGB8:
            objRed = {0, 1};
            break;
        case EPixelFormat::BayerBG8:
            objRed = {1, 1};
            break;
        default:
            return 0;
    }
    return (nColumnParity != objRed.first ? 1u : 0u) + (nLineParity != objRed.second ? 1u : 0u);
}

/// The brightness out of 256, spread so that the highest is the highest of the depth.
std::uint32_t Spread(std::uint32_t nValue, std::uint32_t nDepth) {
    return nValue * 0x101 >> (16 - nDepth);
}

constexpr std::byte Low(std::uint32_t nValue) {
    return static_cast<std::byte>(nValue & 0xFF);
}

/// Writes two pixels as they stand in memory; numbers of several bytes have the lowest byte first.
/// Source: GigE Vision, pixel layouts; the packed ones keep the lowest bits of both pixels in the middle byte.
void EncodePair(const LAYOUT& objLayout, const PAIR& objPair, std::span<std::byte> arrBytes) {
    const std::uint32_t nFirst = Spread(objPair[0][0], objLayout.Depth);
    const std::uint32_t nSecond = Spread(objPair[1][0], objLayout.Depth);
    switch (objLayout.Packing) {
        case EPacking::Bytes:
            arrBytes[0] = Low(nFirst);
            arrBytes[1] = Low(nSecond);
            break;
        case EPacking::Words:
            arrBytes[0] = Low(nFirst);
            arrBytes[1] = Low(nFirst >> 8);
            arrBytes[2] = Low(nSecond);
            arrBytes[3] = Low(nSecond >> 8);
            break;
        case EPacking::Packed10:
            arrBytes[0] = Low(nFirst >> 2);
            arrBytes[1] = Low((nFirst & 0x3) | (nSecond & 0x3) << 4);
            arrBytes[2] = Low(nSecond >> 2);
            break;
        case EPacking::Packed12:
            arrBytes[0] = Low(nFirst >> 4);
            arrBytes[1] = Low((nFirst & 0xF) | (nSecond & 0xF) << 4);
            arrBytes[2] = Low(nSecond >> 4);
            break;
        case EPacking::Colours:
            for (std::size_t i = 0; i < 2 * kColours; ++i) {
                arrBytes[i] = Low(objPair[i / kColours][i % kColours]);
            }
            break;
        case EPacking::None:
            break;
    }
}

/// Two pixels whose brightness steps lie so far apart.
PAIR MakePair(const IMAGE_FORMAT& objFormat, std::uint32_t nValue, std::uint32_t nStep, std::size_t nLineParity) {
    const bool bColours = objFormat.Pattern == ETestPattern::GreyDiagonalRampMoving;
    PAIR objPair;
    for (std::uint32_t i = 0; i < objPair.size(); ++i) {
        for (std::size_t nColour = 0; nColour < kColours; ++nColour) {
            const std::size_t nShown = objFormat.PixelFormat == EPixelFormat::RGB8
                                           ? nColour
                                           : GetFilter(objFormat.PixelFormat, i, nLineParity);
            objPair[i][nColour] = (nValue + i * nStep + (bColours ? kColourSteps[nShown] : 0)) % kPeriod;
        }
    }
    return objPair;
}

bool IsFlat(ETestPattern ePattern) {
    return ePattern == ETestPattern::Off || ePattern == ETestPattern::GreyVerticalRamp;
}

/// From one pixel to the next in a line of a ramp, modulo 256.
std::uint32_t GetStep(const IMAGE_FORMAT& objFormat) {
    return objFormat.ReverseX ? kPeriod - 1 : 1;
}

/// Fills what lies behind the first bytes with repeats of them.
void Repeat(std::span<std::byte> arrBytes, std::size_t nFirst) {
    for (std::size_t nDone = nFirst; nDone < arrBytes.size();) {
        const std::size_t nMore = std::min(nDone, arrBytes.size() - nDone);
        std::memcpy(arrBytes.data() + nDone, arrBytes.data(), nMore);
        nDone += nMore;
    }
}

}  // namespace

bool IsPossible(const IMAGE_FORMAT& objFormat) {
    return GetLayout(objFormat.PixelFormat).Packing != EPacking::None && objFormat.Width != 0 &&
           objFormat.Width % 2 == 0 && objFormat.Height != 0;
}

std::size_t GetImageSize(const IMAGE_FORMAT& objFormat) {
    return std::size_t{objFormat.Width} / 2 * (gev::GetBitsPerPixel(objFormat.PixelFormat) / 4) * objFormat.Height;
}

CTestImage::CTestImage(const IMAGE_FORMAT& objFormat)
    : m_objFormat(objFormat),
      m_nPair(gev::GetBitsPerPixel(objFormat.PixelFormat) / 4),
      m_nLine(m_nPair * (objFormat.Width / 2)) {
    if (!IsPossible(objFormat)) {
        throw std::invalid_argument("no test image has this format");
    }
    const LAYOUT objLayout = GetLayout(objFormat.PixelFormat);
    EncodePair(objLayout, {{{255, 255, 255}, {255, 255, 255}}}, m_arrWhite);
    const std::uint32_t nStep = GetStep(objFormat);
    for (std::size_t nLineParity = 0; nLineParity < 2; ++nLineParity) {
        for (std::uint32_t nCutParity = 0; nCutParity < 2; ++nCutParity) {
            std::vector<std::byte>& vecRamp = m_arrRamp[nLineParity][nCutParity];
            vecRamp.resize((objFormat.Width + kPeriod) / 2 * m_nPair);
            for (std::uint32_t i = 0; i < vecRamp.size() / m_nPair; ++i) {
                EncodePair(objLayout, MakePair(objFormat, (nCutParity + 2 * i) * nStep, nStep, nLineParity),
                           std::span(vecRamp).subspan(i * m_nPair, m_nPair));
            }
        }
    }
}

void CTestImage::Draw(std::uint64_t nFrame, std::span<std::byte> arrImage) const {
    DrawRamp(nFrame, arrImage);
    DrawBits(nFrame, arrImage);
    DrawDigits(nFrame, arrImage);
}

void CTestImage::DrawRamp(std::uint64_t nFrame, std::span<std::byte> arrImage) const {
    const ETestPattern ePattern = m_objFormat.Pattern;
    const std::uint32_t nStep = GetStep(m_objFormat);
    const bool bMoving = ePattern == ETestPattern::GreyDiagonalRampMoving;
    const LAYOUT objLayout = GetLayout(m_objFormat.PixelFormat);
    for (std::size_t nLine = 0; nLine < m_objFormat.Height; ++nLine) {
        const auto arrLine = arrImage.subspan(nLine * m_nLine, m_nLine);
        if (IsFlat(ePattern)) {
            const auto nValue = static_cast<std::uint32_t>(ePattern == ETestPattern::Off ? 0 : nLine % kPeriod);
            EncodePair(objLayout, MakePair(m_objFormat, nValue, 0, nLine % 2), arrLine.first(m_nPair));
            Repeat(arrLine, m_nPair);
            continue;
        }
        const std::uint64_t nFirst =
            (bMoving ? nLine + nFrame : 0) + (m_objFormat.ReverseX ? m_objFormat.Width - 1 : 0);
        // The step is 1 or its own opposite's, so it is its own inverse as well.
        const std::size_t nCut = nFirst % kPeriod * nStep % kPeriod;
        const auto& vecRamp = m_arrRamp[nLine % 2][nCut % 2];
        std::memcpy(arrLine.data(), vecRamp.data() + nCut / 2 * m_nPair, m_nLine);
    }
}

std::uint32_t CTestImage::GetBitCount() const {
    return std::min(kMostBits, m_objFormat.Width / 2);
}

std::size_t CTestImage::GetBitPairs() const {
    return m_objFormat.Width / 2 / GetBitCount();
}

void CTestImage::DrawBits(std::uint64_t nFrame, std::span<std::byte> arrImage) const {
    const std::size_t nLines = std::max(1U, m_objFormat.Height / kLinesOfBits);
    Paint(arrImage, 0, 0, m_objFormat.Width / 2, false);
    for (std::uint32_t i = 0; i < GetBitCount(); ++i) {
        if ((nFrame >> (GetBitCount() - 1 - i) & 1) != 0) {
            Paint(arrImage, 0, i * GetBitPairs(), GetBitPairs(), true);
        }
    }
    Repeat(arrImage.first(nLines * m_nLine), m_nLine);
}

void CTestImage::DrawDigits(std::uint64_t nFrame, std::span<std::byte> arrImage) const {
    std::array<char, 20> arrText{};
    const auto nDigits = static_cast<std::size_t>(
        std::to_chars(arrText.data(), arrText.data() + arrText.size(), nFrame).ptr - arrText.data());
    const std::size_t nDotPairs = std::max(1U, m_objFormat.Width / kColumnsOfDigits);
    const std::size_t nDotLines = 2 * nDotPairs;
    const std::size_t nTop = std::max(1U, m_objFormat.Height / kLinesOfBits) + nDotLines;
    // A black border of one dot all around.
    const std::size_t nColumns = nDigits * (kDigitColumns + 1) + 1;
    const std::size_t nLines = kDigitLines + 2;
    if (nColumns * nDotPairs > m_objFormat.Width / 2 || nTop + nLines * nDotLines > m_objFormat.Height) {
        return;
    }
    for (std::size_t nDotLine = 0; nDotLine < nLines; ++nDotLine) {
        const std::size_t nLine = nTop + nDotLine * nDotLines;
        Paint(arrImage, nLine, 0, nColumns * nDotPairs, false);
        const bool bBorder = nDotLine == 0 || nDotLine == nLines - 1;
        for (std::size_t i = 0; i < nDigits * kDigitColumns && !bBorder; ++i) {
            const std::uint32_t nDots = kDigits[static_cast<std::size_t>(arrText[i / kDigitColumns] - '0')];
            const std::size_t nDot = (nDotLine - 1) * kDigitColumns + i % kDigitColumns;
            if ((nDots >> (kDigitColumns * kDigitLines - 1 - nDot) & 1) != 0) {
                const std::size_t nColumn = 1 + i / kDigitColumns * (kDigitColumns + 1) + i % kDigitColumns;
                Paint(arrImage, nLine, nColumn * nDotPairs, nDotPairs, true);
            }
        }
        for (std::size_t i = 1; i < nDotLines; ++i) {
            std::memcpy(arrImage.data() + (nLine + i) * m_nLine, arrImage.data() + nLine * m_nLine,
                        nColumns * nDotPairs * m_nPair);
        }
    }
}

void CTestImage::Paint(std::span<std::byte> arrImage, std::size_t nLine, std::size_t nFirstPair, std::size_t nPairs,
                       bool bWhite) const {
    const auto arrPairs = arrImage.subspan(nLine * m_nLine + nFirstPair * m_nPair, nPairs * m_nPair);
    if (!bWhite) {
        std::ranges::fill(arrPairs, std::byte{0});
        return;
    }
    std::copy_n(m_arrWhite.begin(), m_nPair, arrPairs.begin());
    Repeat(arrPairs, m_nPair);
}

std::uint32_t CTestImage::ReadFrameNumber(std::span<const std::byte> arrImage) const {
    std::uint32_t nNumber = 0;
    for (std::uint32_t i = 0; i < GetBitCount(); ++i) {
        // The first byte of a white pair is the highest there is, in every format.
        nNumber = nNumber << 1 | (arrImage[i * GetBitPairs() * m_nPair] != std::byte{0} ? 1u : 0u);
    }
    return nNumber;
}

}  // namespace camera
