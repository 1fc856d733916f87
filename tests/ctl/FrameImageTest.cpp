#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

#include "ctl/FrameImage.h"
#include "ctl/PngImage.h"

namespace {

using BYTES = std::vector<std::uint8_t>;

TEST(ConvertFrame, PutsSamplesAtTheHighEndInFileOrder) {
    const struct {
        const char* pName;
        FRAME_SHAPE objShape;
        BYTES vecData;
        BYTES vecSample;
    } arrCase[] = {
        {"Mono8", {0x01080001, 2, 2, 0}, {1, 2, 3, 4}, {1, 2, 3, 4}},
        {"Mono8 with padding", {0x01080001, 2, 2, 1}, {1, 2, 99, 3, 4}, {1, 2, 3, 4}},
        {"Mono10", {0x01100003, 2, 1, 0}, {0xFF, 0x03, 0x01, 0x00}, {0xFF, 0xC0, 0x00, 0x40}},
        {"Mono12, with rubbish above", {0x01100005, 1, 1, 0}, {0xBC, 0xFA}, {0xAB, 0xC0}},
        {"Mono14", {0x01100025, 1, 1, 0}, {0xFF, 0x3F}, {0xFF, 0xFC}},
        {"Mono16", {0x01100007, 1, 1, 0}, {0x34, 0x12}, {0x12, 0x34}},
        {"Mono10Packed", {0x010C0004, 2, 1, 0}, {0xFF, 0x21, 0x80}, {0xFF, 0x40, 0x80, 0x80}},
        {"Mono12Packed", {0x010C0006, 3, 1, 0}, {0xAB, 0x6C, 0x45, 0xDE, 0x0F}, {0xAB, 0xC0, 0x45, 0x60, 0xDE, 0xF0}},
        {"Mono10p", {0x010A0046, 4, 1, 0}, {0x01, 0x08, 0x30, 0x00, 0xFF}, {0, 0x40, 0, 0x80, 0, 0xC0, 0xFF, 0x00}},
        {"Mono12p", {0x010C0047, 2, 1, 0}, {0xBC, 0x6A, 0x45}, {0xAB, 0xC0, 0x45, 0x60}},
        {"RGB8 with padding", {0x02180014, 1, 2, 1}, {1, 2, 3, 99, 4, 5, 6}, {1, 2, 3, 4, 5, 6}},
        {"BGR8", {0x02180015, 1, 1, 0}, {3, 2, 1}, {1, 2, 3}},
        // Rows of red and green, and of green and blue, each colour flat: so must the picture be.
        {"BayerRG8", {0x01080009, 2, 2, 0}, {9, 5, 5, 1}, {9, 5, 1, 9, 5, 1, 9, 5, 1, 9, 5, 1}},
        {"BayerGR8", {0x01080008, 2, 2, 0}, {5, 9, 1, 5}, {9, 5, 1, 9, 5, 1, 9, 5, 1, 9, 5, 1}},
        {"BayerGB8", {0x0108000A, 2, 2, 0}, {5, 1, 9, 5}, {9, 5, 1, 9, 5, 1, 9, 5, 1, 9, 5, 1}},
        {"BayerBG8", {0x0108000B, 2, 2, 0}, {1, 5, 5, 9}, {9, 5, 1, 9, 5, 1, 9, 5, 1, 9, 5, 1}},
        {"BayerBG12p",
         {0x010C0053, 2, 2, 0},
         {0x01, 0x50, 0x00, 0x05, 0x90, 0x00},
         {0x00, 0x90, 0x00, 0x50, 0x00, 0x10, 0x00, 0x90, 0x00, 0x50, 0x00, 0x10,
          0x00, 0x90, 0x00, 0x50, 0x00, 0x10, 0x00, 0x90, 0x00, 0x50, 0x00, 0x10}},
        {"BayerRG12, a strip", {0x01100011, 1, 1, 0}, {0xBC, 0x0A}, {0xAB, 0xC0}},
    };
    for (const auto& objCase : arrCase) {
        SCOPED_TRACE(objCase.pName);
        const std::optional<IMAGE> objImage = ConvertFrame(objCase.vecData, objCase.objShape);
        ASSERT_TRUE(objImage.has_value());
        EXPECT_EQ(objImage->vecSample, objCase.vecSample);
        const BYTES vecShort(objCase.vecData.begin(), objCase.vecData.end() - 1);
        EXPECT_FALSE(ConvertFrame(vecShort, objCase.objShape).has_value());
    }
}

TEST(ConvertFrame, AveragesTheNeighboursOfAMosaic) {
    const BYTES vecData = {10, 20,  30,  40,  //
                           50, 60,  70,  80,  //
                           90, 100, 110, 120};
    const std::optional<IMAGE> objImage = ConvertFrame(vecData, {0x01080009, 4, 3, 0});
    ASSERT_TRUE(objImage.has_value());
    const auto Pixel = [&](std::size_t nX, std::size_t nY) {
        const auto itPixel = objImage->vecSample.begin() + static_cast<std::ptrdiff_t>((nY * 4 + nX) * 3);
        return BYTES(itPixel, itPixel + 3);
    };
    EXPECT_EQ(Pixel(1, 1), (BYTES{60, 60, 60}));  // blue was measured
    EXPECT_EQ(Pixel(2, 1), (BYTES{70, 70, 70}));  // green, in a row of blue
    EXPECT_EQ(Pixel(0, 0), (BYTES{10, 35, 60}));  // red, in a corner: the neighbours mirrored
    EXPECT_EQ(Pixel(3, 2), (BYTES{110, 120, 80}));
}

TEST(ConvertFrame, RefusesSizesThatNoFrameHas) {
    const BYTES vecData(64);
    for (const FRAME_SHAPE& objShape :
         {FRAME_SHAPE{0x01080001, 0, 8, 0}, FRAME_SHAPE{0x01080001, 8, 0, 0},
          FRAME_SHAPE{0x01080001, SIZE_MAX, SIZE_MAX, 0}, FRAME_SHAPE{0x01100007, SIZE_MAX / 2 + 2, 1, 0},
          FRAME_SHAPE{0x01080001, 8, 8, SIZE_MAX}, FRAME_SHAPE{0x0210001F, 4, 4, 0}}) {
        EXPECT_FALSE(ConvertFrame(vecData, objShape).has_value());
    }
    EXPECT_EQ(GetPixelFormatName(0x0210001F), "0x0210001F");
}

/// Reads with the library itself, which the sizes of the samples and their order have to suit.
TEST(EncodePng, KeepsEverySample) {
    const IMAGE objImage = *ConvertFrame(BYTES{0xFF, 0x03, 0x01, 0x00, 0x02, 0x00}, {0x01100003, 1, 3, 0});
    const std::string strFile = EncodePng(objImage);
    EXPECT_THAT(strFile, testing::HasSubstr("sBIT\x0A"));  // ten bits are significant
    struct READING {
        const std::string& strFile;
        std::size_t nOffset;
    } objReading{strFile, 0};
    png_structp pPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop pInfo = png_create_info_struct(pPng);
    png_set_read_fn(pPng, &objReading, [](png_structp pReader, png_bytep pData, png_size_t nSize) {
        auto& objFrom = *static_cast<READING*>(png_get_io_ptr(pReader));
        objFrom.strFile.copy(reinterpret_cast<char*>(pData), nSize, objFrom.nOffset);
        objFrom.nOffset += nSize;
    });
    png_read_png(pPng, pInfo, PNG_TRANSFORM_IDENTITY, nullptr);
    EXPECT_EQ(png_get_bit_depth(pPng, pInfo), 16);
    BYTES vecSample;
    for (png_uint_32 nY = 0; nY < png_get_image_height(pPng, pInfo); ++nY) {
        const png_bytep pRow = png_get_rows(pPng, pInfo)[nY];
        vecSample.insert(vecSample.end(), pRow, pRow + png_get_rowbytes(pPng, pInfo));
    }
    EXPECT_EQ(vecSample, objImage.vecSample);
    png_destroy_read_struct(&pPng, &pInfo, nullptr);
}

}  // namespace
