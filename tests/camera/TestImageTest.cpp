#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "camera/TestImage.h"
#include "gev/GvspLeader.h"

namespace {

using camera::CTestImage;
using camera::ETestPattern;
using camera::IMAGE_FORMAT;
using gev::EPixelFormat;

std::uint32_t Byte(std::span<const std::byte> arrLine, std::size_t i) {
    return std::to_integer<std::uint32_t>(arrLine[i]);
}

/// How a pixel is read out of a line, told apart from how it is written.
struct UNPACKING {
    EPixelFormat Format;
    std::uint32_t Depth;
    std::uint32_t (*Read)(std::span<const std::byte> arrLine, std::size_t x, std::size_t nColour);
    const char* Colours;  // of two lines of two pixels, or of one pixel: steps of the ramp
};

std::uint32_t ReadByte(std::span<const std::byte> arrLine, std::size_t x, std::size_t /*nColour*/) {
    return Byte(arrLine, x);
}
std::uint32_t ReadWord(std::span<const std::byte> arrLine, std::size_t x, std::size_t /*nColour*/) {
    return Byte(arrLine, 2 * x) | Byte(arrLine, 2 * x + 1) << 8;
}
std::uint32_t Read10(std::span<const std::byte> arrLine, std::size_t x, std::size_t /*nColour*/) {
    const std::size_t nByte = x / 2 * 3;
    return x % 2 == 0 ? Byte(arrLine, nByte) << 2 | (Byte(arrLine, nByte + 1) & 3)
                      : Byte(arrLine, nByte + 2) << 2 | (Byte(arrLine, nByte + 1) >> 4 & 3);
}
std::uint32_t Read12(std::span<const std::byte> arrLine, std::size_t x, std::size_t /*nColour*/) {
    const std::size_t nByte = x / 2 * 3;
    return x % 2 == 0 ? Byte(arrLine, nByte) << 4 | (Byte(arrLine, nByte + 1) & 15)
                      : Byte(arrLine, nByte + 2) << 4 | Byte(arrLine, nByte + 1) >> 4;
}
std::uint32_t ReadColour(std::span<const std::byte> arrLine, std::size_t x, std::size_t nColour) {
    return Byte(arrLine, 3 * x + nColour);
}

constexpr UNPACKING kFormats[] = {
    {EPixelFormat::Mono8, 8, ReadByte, "RRRR"},       {EPixelFormat::Mono10, 10, ReadWord, "RRRR"},
    {EPixelFormat::Mono10Packed, 10, Read10, "RRRR"}, {EPixelFormat::Mono12, 12, ReadWord, "RRRR"},
    {EPixelFormat::Mono12Packed, 12, Read12, "RRRR"}, {EPixelFormat::Mono14, 14, ReadWord, "RRRR"},
    {EPixelFormat::Mono16, 16, ReadWord, "RRRR"},     {EPixelFormat::BayerGR8, 8, ReadByte, "GRBG"},
    {EPixelFormat::BayerRG8, 8, ReadByte, "RGGB"},    {EPixelFormat::BayerGB8, 8, ReadByte, "GBRG"},
    {EPixelFormat::BayerBG8, 8, ReadByte, "BGGR"},    {EPixelFormat::BayerRG12, 12, ReadWord, "RGGB"},
    {EPixelFormat::RGB8, 8, ReadColour, "RGB"}};

/// The brightness as the class tells it, by the slow way.
std::uint32_t Expect(const UNPACKING& objFormat, std::uint32_t nSum, std::size_t x, std::size_t y,
                     std::size_t nColour) {
    const char nLetter =
        objFormat.Format == EPixelFormat::RGB8 ? objFormat.Colours[nColour] : objFormat.Colours[y % 2 * 2 + x % 2];
    const std::uint32_t nValue = (nSum + (nLetter == 'R' ? 0u : nLetter == 'G' ? 85u : 170u)) % 256;
    return nValue << (objFormat.Depth - 8) | nValue >> (16 - objFormat.Depth);
}

TEST(TestImage, EveryFormatHasTheBrightnessOfItsPlaceInEveryPixel) {
    constexpr std::uint32_t kWidth = 560;
    constexpr std::uint32_t kHeight = 42;
    constexpr std::uint64_t kFrame = 1'000'000'007;
    for (const UNPACKING& objCase : kFormats) {
        for (const bool bReverse : {false, true}) {
            SCOPED_TRACE(gev::GetName(objCase.Format));
            const CTestImage objImage(
                {kWidth, kHeight, objCase.Format, ETestPattern::GreyDiagonalRampMoving, bReverse});
            gev::GVSP_LEADER objLeader;
            objLeader.PixelFormat = objCase.Format;
            objLeader.SizeX = kWidth;
            objLeader.SizeY = kHeight;
            ASSERT_EQ(objImage.GetSize(), gev::GetImageSize(objLeader));
            std::vector<std::byte> vecImage(objImage.GetSize(), std::byte{0x55});
            objImage.Draw(kFrame, vecImage);
            EXPECT_EQ(objImage.ReadFrameNumber(vecImage), kFrame);
            const std::size_t nLine = vecImage.size() / kHeight;
            std::size_t nWrong = 0;
            for (std::size_t y = 33; y < kHeight; ++y) {  // below the digits
                const auto arrLine = std::span<const std::byte>(vecImage).subspan(y * nLine, nLine);
                for (std::size_t x = 0; x < kWidth; ++x) {
                    const auto nSum = static_cast<std::uint32_t>((bReverse ? kWidth - 1 - x : x) + y + kFrame % 256);
                    for (std::size_t i = 0; i < (objCase.Format == EPixelFormat::RGB8 ? 3 : 1); ++i) {
                        nWrong += objCase.Read(arrLine, x, i) == Expect(objCase, nSum, x, y, i) ? 0 : 1;
                    }
                }
            }
            EXPECT_EQ(nWrong, 0u);
        }
    }
}

TEST(TestImage, TheFrameNumberStandsThereInBitsAndDigits) {
    const CTestImage objImage({64, 32, EPixelFormat::Mono8, ETestPattern::Off, false});
    std::vector<std::byte> vecImage(objImage.GetSize(), std::byte{0x55});
    objImage.Draw(0x80000007, vecImage);
    EXPECT_EQ(objImage.ReadFrameNumber(vecImage), 0x80000007u);
    objImage.Draw(17, vecImage);
    std::string strShown;
    for (std::size_t nDotLine = 0; nDotLine < 5; ++nDotLine) {
        for (std::size_t nDot = 0; nDot < 7; ++nDot) {
            strShown += vecImage[(3 + 2 + 2 * nDotLine) * 64 + 2 + 2 * nDot] == std::byte{0} ? ' ' : '#';
        }
        strShown += '\n';
    }
    EXPECT_EQ(strShown,
              " #  ###\n"
              "##    #\n"
              " #   # \n"
              " #   # \n"
              "###  # \n");
    const CTestImage objSmallest({16, 2, EPixelFormat::Mono12Packed, ETestPattern::GreyVerticalRamp, false});
    std::vector<std::byte> vecSmallest(objSmallest.GetSize());
    objSmallest.Draw(0x1A5, vecSmallest);
    EXPECT_EQ(objSmallest.ReadFrameNumber(vecSmallest), 0xA5u) << "eight pairs of columns, eight bits";
    EXPECT_EQ(vecSmallest[24], std::byte{0x01}) << "line 1 of 256, in 12 bits 0x010";
    EXPECT_EQ(vecSmallest[25], std::byte{0});
    EXPECT_FALSE(camera::IsPossible({15, 2, EPixelFormat::Mono8}));
    EXPECT_FALSE(camera::IsPossible({16, 2, static_cast<EPixelFormat>(0x01080099)}));
}

}  // namespace
