#include "ctl/PngImage.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <exception>
#include <utility>

#include <png.h>

#include "ctl/ExitCode.h"

namespace {

/// What the library's callbacks get at. An error jumps back through frames of C, where no exception may pass, so its
/// text waits here.
struct ENCODING {
    std::string strFile;
    std::array<char, 256> arrError{};
};

void OnError(png_structp pPng, png_const_charp pText) {
    auto* const pEncoding = static_cast<ENCODING*>(png_get_error_ptr(pPng));
    std::snprintf(pEncoding->arrError.data(), pEncoding->arrError.size(), "%s", pText);
    png_longjmp(pPng, 1);
}

void OnWarning(png_structp /*pPng*/, png_const_charp /*pText*/) {}

void OnWrite(png_structp pPng, png_bytep pData, png_size_t nSize) {
    auto* const pEncoding = static_cast<ENCODING*>(png_get_io_ptr(pPng));
    bool bStored = true;
    try {
        pEncoding->strFile.append(reinterpret_cast<const char*>(pData), nSize);
    } catch (const std::exception&) {
        bStored = false;
    }
    if (!bStored) {
        png_error(pPng, "not enough memory");
    }
}

/// Nothing in here has a destructor, since an error jumps over it.
bool Write(png_structp pPng, png_infop pInfo, ENCODING* pEncoding, const IMAGE* pImage) {
    constexpr int kFastCompression = 1;
    if (setjmp(png_jmpbuf(pPng)) != 0) {
        return false;
    }
    png_set_write_fn(pPng, pEncoding, OnWrite, nullptr);
    png_set_compression_level(pPng, kFastCompression);
    png_set_filter(pPng, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    const bool bGrey = pImage->nChannels == 1;
    png_set_IHDR(pPng, pInfo, static_cast<png_uint_32>(pImage->nWidth), static_cast<png_uint_32>(pImage->nHeight),
                 static_cast<int>(pImage->nBits), bGrey ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (pImage->nSignificantBits < pImage->nBits) {
        const auto nBits = static_cast<png_byte>(pImage->nSignificantBits);
        const png_color_8 objSignificant = {nBits, nBits, nBits, nBits, 0};
        png_set_sBIT(pPng, pInfo, &objSignificant);
    }
    png_write_info(pPng, pInfo);
    const std::size_t nRowBytes = pImage->nWidth * pImage->nChannels * (pImage->nBits / 8);
    for (std::size_t nY = 0; nY < pImage->nHeight; ++nY) {
        png_write_row(pPng, pImage->vecSample.data() + nY * nRowBytes);
    }
    png_write_end(pPng, pInfo);
    return true;
}

}  // namespace

std::string EncodePng(const IMAGE& objImage) {
    ENCODING objEncoding;
    png_structp pPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, &objEncoding, OnError, OnWarning);
    png_infop pInfo = pPng == nullptr ? nullptr : png_create_info_struct(pPng);
    const bool bWritten = pInfo != nullptr && Write(pPng, pInfo, &objEncoding, &objImage);
    png_destroy_write_struct(&pPng, &pInfo);
    if (!bWritten) {
        throw CCommandError(EXIT_CODE::Failure,
                            std::string("a frame can't be made a PNG file: ") +
                                (objEncoding.arrError[0] == '\0' ? "not enough memory" : objEncoding.arrError.data()));
    }
    return std::move(objEncoding.strFile);
}
