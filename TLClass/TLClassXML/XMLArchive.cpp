#include "TLClass/TLClassXML/XMLArchive.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <limits>
#include <memory>
#include <string_view>

#include <zlib.h>

namespace {

constexpr std::uint32_t kZipSignature = 0x04034B50;
constexpr std::size_t kSignatureSize = 4;

// The local file header of a ZIP file: offsets of what is used of it, and its size.
constexpr std::size_t kCompressedSize = 18;
constexpr std::size_t kUncompressedSize = 22;
constexpr std::size_t kNameLength = 26;
constexpr std::size_t kExtraLength = 28;
constexpr std::size_t kHeaderSize = 30;

// A raw deflate stream. The small window holds nothing back: with the whole output in one buffer, distances of up to
// 32 KiB are copied from there.
constexpr int kWindowBits = -8;

// The most that a zlib stream may grow by.
constexpr std::size_t kMaxGrowth = 100;

std::uint32_t ReadLittleEndian(std::string_view strData, std::size_t nOffset, std::size_t nBytes) {
    std::uint32_t nValue = 0;
    for (std::size_t i = nBytes; i > 0; --i) {
        nValue = nValue << 8 | static_cast<std::uint8_t>(strData[nOffset + i - 1]);
    }
    return nValue;
}

/// @param nProduced  set if the result is Z_OK
int Inflate(std::string_view strInput, char* pOutput, std::size_t nOutput, std::size_t& nProduced) {
    constexpr std::size_t kMaxStreamLength = std::numeric_limits<uInt>::max();
    if (strInput.size() > kMaxStreamLength || nOutput > kMaxStreamLength) {
        return Z_BUF_ERROR;
    }
    z_stream objStream{};
    objStream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(strInput.data()));  // zlib doesn't write there
    objStream.avail_in = static_cast<uInt>(strInput.size());
    objStream.next_out = reinterpret_cast<Bytef*>(pOutput);
    objStream.avail_out = static_cast<uInt>(nOutput);
    const int nInitialised = inflateInit2_(&objStream, kWindowBits, ZLIB_VERSION, sizeof(z_stream));
    if (nInitialised != Z_OK) {
        return nInitialised;
    }
    const int nResult = inflate(&objStream, Z_FINISH);
    if (nResult == Z_STREAM_END) {
        nProduced = objStream.total_out;
        return inflateEnd(&objStream);
    }
    inflateEnd(&objStream);
    const bool bNothingGiven = nResult == Z_BUF_ERROR && strInput.empty();
    return nResult == Z_NEED_DICT || bNothingGiven ? Z_DATA_ERROR : nResult;
}

bool UncompressZlibStream(std::string& strContent) {
    const std::size_t nCapacity = std::min(strContent.size() * kMaxGrowth, kMaxDescriptionLength);
    // The byte behind the output ends the text.
    const auto pOutput = std::make_unique_for_overwrite<char[]>(nCapacity + 1);
    uLongf nProduced = static_cast<uLongf>(nCapacity);
    const int nResult =
        uncompress(reinterpret_cast<Bytef*>(pOutput.get()), &nProduced,
                   reinterpret_cast<const Bytef*>(strContent.data()), static_cast<uLong>(strContent.size()));
    if (nResult != Z_OK) {
        return false;
    }
    pOutput[nProduced] = '\0';
    strContent.assign(pOutput.get());
    return true;
}

}  // namespace

bool InflateZipEntry(const std::string& strArchive, std::string& strContent) {
    const std::string_view strData = strArchive;
    if (strData.size() < kHeaderSize) {
        return false;
    }
    const std::size_t nCompressed = ReadLittleEndian(strData, kCompressedSize, 4);
    const std::size_t nUncompressed = ReadLittleEndian(strData, kUncompressedSize, 4);
    const std::size_t nPlace =
        kHeaderSize + ReadLittleEndian(strData, kNameLength, 2) + ReadLittleEndian(strData, kExtraLength, 2);
    if (nPlace > strData.size() || nCompressed > strData.size() - nPlace || nUncompressed > kMaxDescriptionLength) {
        return false;
    }
    const auto pOutput = std::make_unique_for_overwrite<char[]>(nUncompressed);
    std::size_t nProduced = 0;
    if (Inflate(strData.substr(nPlace, nCompressed), pOutput.get(), nUncompressed, nProduced) != Z_OK) {
        return false;
    }
    strContent.assign(pOutput.get(), nProduced);
    return true;
}

void UnzipXMLString(std::string& strContent) {
    if (strContent.size() >= kSignatureSize && ReadLittleEndian(strContent, 0, kSignatureSize) == kZipSignature) {
        if (!InflateZipEntry(strContent, strContent)) {
            std::puts("Unable to uncompress ZIP file");
        }
    } else if (!UncompressZlibStream(strContent)) {
        std::puts("Unable to uncompress XML data");
    }
}

bool UnpackXMLBuffer(const std::vector<char>& vecInput, std::vector<char>& vecOutput) {
    try {
        std::string strContent(vecInput.begin(), vecInput.end());
        UnzipXMLString(strContent);
        vecOutput.assign(strContent.begin(), strContent.end());
    } catch (const std::exception&) {
        return false;
    }
    return true;
}
