#include "ctl/FrameImage.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "ctl/Mosaic.h"
#include "ctl/PixelFormats.h"
#include "support/Text.h"

namespace {

// The largest sensors have some 30,000 pixels a side. Products of sizes below this don't overflow.
constexpr std::size_t kMostPixelsInARow = std::size_t{1} << 20;

/// Bytes from one row to the next, if rows are told apart at all: packed pixels run on from row to row unless there is
/// padding.
std::size_t StrideOf(const FRAME_SHAPE& objShape, std::size_t nBitsPerPixel) {
    return (objShape.nWidth * nBitsPerPixel + 7) / 8 + objShape.nPadding;
}

bool IsWhole(std::size_t nBytes, const FRAME_SHAPE& objShape, std::size_t nBitsPerPixel) {
    const bool bSane = objShape.nWidth > 0 && objShape.nHeight > 0 && objShape.nWidth <= kMostPixelsInARow &&
                       objShape.nHeight <= kMostPixelsInARow && objShape.nPadding <= kMostPixelsInARow;
    if (!bSane) {
        return false;
    }
    const std::size_t nNeeded = objShape.nPadding == 0 ? (objShape.nWidth * objShape.nHeight * nBitsPerPixel + 7) / 8
                                                       : StrideOf(objShape, nBitsPerPixel) * (objShape.nHeight - 1) +
                                                             StrideOf(objShape, nBitsPerPixel) - objShape.nPadding;
    return nNeeded <= nBytes;
}

/// One sample, counted from the start of the row or of the picture.
std::uint16_t SampleAt(const std::uint8_t* pData, std::size_t nIndex, const PIXEL_FORMAT& objFormat) {
    switch (objFormat.ePacking) {
        case PACKING::Byte:
            return pData[nIndex];
        case PACKING::Word: {
            // A camera that leaves something above its bits shall not upset the shift.
            const unsigned nWord = pData[2 * nIndex] | pData[2 * nIndex + 1] << 8;
            return static_cast<std::uint16_t>(nWord & ((1U << objFormat.nBits) - 1));
        }
        case PACKING::GigE10:
        case PACKING::GigE12: {
            const unsigned nLowBits = objFormat.nBits - 8;
            const std::uint8_t* const pTriple = pData + nIndex / 2 * 3;
            const unsigned nHigh = nIndex % 2 == 0 ? pTriple[0] : pTriple[2];
            const unsigned nLow = (nIndex % 2 == 0 ? pTriple[1] : pTriple[1] >> 4) & ((1U << nLowBits) - 1);
            return static_cast<std::uint16_t>(nHigh << nLowBits | nLow);
        }
        default: {  // LowFirst: 10 or 12 bits, which lie in two bytes
            const std::size_t nBit = nIndex * objFormat.nBits;
            const unsigned nWord = pData[nBit / 8] | pData[nBit / 8 + 1] << 8;
            return static_cast<std::uint16_t>(nWord >> nBit % 8 & ((1U << objFormat.nBits) - 1));
        }
    }
}

std::vector<std::uint16_t> Unpack(std::span<const std::uint8_t> vecData, const FRAME_SHAPE& objShape,
                                  const PIXEL_FORMAT& objFormat) {
    std::vector<std::uint16_t> vecSample(objShape.nWidth * objShape.nHeight);
    std::uint16_t* pSample = vecSample.data();
    if (objShape.nPadding == 0) {
        for (std::size_t i = 0; i < vecSample.size(); ++i) {
            pSample[i] = SampleAt(vecData.data(), i, objFormat);
        }
        return vecSample;
    }
    const std::size_t nStride = StrideOf(objShape, objFormat.BitsPerPixel());
    for (std::size_t nY = 0; nY < objShape.nHeight; ++nY) {
        const std::uint8_t* const pRow = vecData.data() + nY * nStride;
        for (std::size_t nX = 0; nX < objShape.nWidth; ++nX) {
            *pSample++ = SampleAt(pRow, nX, objFormat);
        }
    }
    return vecSample;
}

/// Samples as a file has them: a byte each, or two with the significant bits highest.
std::vector<std::uint8_t> ToFileOrder(const std::vector<std::uint16_t>& vecSample, unsigned nSignificantBits) {
    if (nSignificantBits <= 8) {
        return {vecSample.begin(), vecSample.end()};
    }
    std::vector<std::uint8_t> vecByte(vecSample.size() * 2);
    std::uint8_t* pByte = vecByte.data();
    for (const std::uint16_t nSample : vecSample) {
        const unsigned nShifted = static_cast<unsigned>(nSample) << (16 - nSignificantBits);
        *pByte++ = static_cast<std::uint8_t>(nShifted >> 8);
        *pByte++ = static_cast<std::uint8_t>(nShifted);
    }
    return vecByte;
}

/// Whole colours, with the rows closed up.
std::vector<std::uint8_t> CopyColours(std::span<const std::uint8_t> vecData, const FRAME_SHAPE& objShape,
                                      const PIXEL_FORMAT& objFormat) {
    const std::size_t nRowBytes = objShape.nWidth * 3;
    const std::size_t nStride = nRowBytes + objShape.nPadding;
    std::vector<std::uint8_t> vecColour(nRowBytes * objShape.nHeight);
    for (std::size_t nY = 0; nY < objShape.nHeight; ++nY) {
        std::copy_n(vecData.data() + nY * nStride, nRowBytes, vecColour.data() + nY * nRowBytes);
    }
    if (objFormat.ePacking == PACKING::Bgr) {
        for (std::size_t i = 0; i < vecColour.size(); i += 3) {
            std::swap(vecColour[i], vecColour[i + 2]);
        }
    }
    return vecColour;
}

}  // namespace

std::string GetPixelFormatName(std::uint64_t nPixelFormat) {
    if (const PIXEL_FORMAT* const pFormat = FindPixelFormat(nPixelFormat)) {
        return pFormat->pName;
    }
    constexpr std::size_t kDigits = 8;
    std::array<char, 16> arrDigit{};
    const auto objResult = std::to_chars(arrDigit.data(), arrDigit.data() + arrDigit.size(), nPixelFormat, 16);
    std::string strDigits = ToUpperAscii(std::string(arrDigit.data(), objResult.ptr));
    strDigits.insert(0, kDigits - std::min(kDigits, strDigits.size()), '0');
    return "0x" + strDigits;
}

bool IsConvertible(std::uint64_t nPixelFormat) {
    return FindPixelFormat(nPixelFormat) != nullptr;
}

std::optional<IMAGE> ConvertFrame(std::span<const std::uint8_t> vecData, const FRAME_SHAPE& objShape) {
    const PIXEL_FORMAT* const pFormat = FindPixelFormat(objShape.nPixelFormat);
    if (pFormat == nullptr || !IsWhole(vecData.size(), objShape, pFormat->BitsPerPixel())) {
        return std::nullopt;
    }
    IMAGE objImage;
    objImage.nWidth = objShape.nWidth;
    objImage.nHeight = objShape.nHeight;
    objImage.nSignificantBits = pFormat->nBits;
    objImage.nBits = pFormat->nBits > 8 ? 16 : 8;
    if (pFormat->ePacking == PACKING::Rgb || pFormat->ePacking == PACKING::Bgr) {
        objImage.nChannels = 3;
        objImage.vecSample = CopyColours(vecData, objShape, *pFormat);
        return objImage;
    }
    std::vector<std::uint16_t> vecSample = Unpack(vecData, objShape, *pFormat);
    // A strip of one pixel has no neighbours to take colours from, and stays grey.
    if (pFormat->eMosaic != MOSAIC::None && objShape.nWidth > 1 && objShape.nHeight > 1) {
        objImage.nChannels = 3;
        vecSample = Demosaic(vecSample, objShape.nWidth, objShape.nHeight, pFormat->eMosaic);
    }
    objImage.vecSample = ToFileOrder(vecSample, pFormat->nBits);
    return objImage;
}
