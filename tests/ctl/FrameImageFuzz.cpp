// A frame of any format and size, made a picture of: the bytes that came are enough or it is refused.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "ctl/FrameImage.h"
#include "ctl/PixelFormats.h"
#include "tests/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CFuzzInput objInput(pData, nSize);
    FRAME_SHAPE objShape;
    const auto nFormat = objInput.Take<std::uint8_t>();
    objShape.nPixelFormat =
        nFormat < GetPixelFormats().size() ? GetPixelFormats()[nFormat].nCode : objInput.Take<std::uint32_t>();
    objShape.nWidth = objInput.Take<std::uint16_t>();
    objShape.nHeight = objInput.Take<std::uint16_t>();
    objShape.nPadding = objInput.Take<std::uint8_t>();
    if (nFormat % 16 == 15) {  // sizes whose product doesn't fit
        objShape.nWidth <<= 48;
        objShape.nHeight <<= 40;
        objShape.nPadding <<= 56;
    }
    std::unique_ptr<std::byte[]> pMemory;
    const auto arrFrame = objInput.TakeRest(pMemory);
    const auto objImage =
        ConvertFrame({reinterpret_cast<const std::uint8_t*>(arrFrame.data()), arrFrame.size()}, objShape);
    if (objImage) {
        Require(IsConvertible(objShape.nPixelFormat) && objImage->nWidth == objShape.nWidth);
        Require(objImage->vecSample.size() ==
                objImage->nWidth * objImage->nHeight * objImage->nChannels * objImage->nBits / 8);
        Require(objImage->vecSample.size() <= arrFrame.size() * 8);
    }
    Require(!GetPixelFormatName(objShape.nPixelFormat).empty());
    return 0;
}
