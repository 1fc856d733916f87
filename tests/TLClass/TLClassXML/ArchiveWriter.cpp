#include "tests/TLClass/TLClassXML/ArchiveWriter.h"

#include <stdexcept>

#include <zlib.h>

namespace {

std::string Compress(const std::string& strText, int nWindowBits) {
    z_stream objStream{};
    if (deflateInit2(&objStream, Z_BEST_COMPRESSION, Z_DEFLATED, nWindowBits, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("deflateInit2");
    }
    std::string strResult(deflateBound(&objStream, strText.size()), '\0');
    objStream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(strText.data()));
    objStream.avail_in = static_cast<uInt>(strText.size());
    objStream.next_out = reinterpret_cast<Bytef*>(strResult.data());
    objStream.avail_out = static_cast<uInt>(strResult.size());
    const int nStatus = deflate(&objStream, Z_FINISH);
    strResult.resize(objStream.total_out);
    deflateEnd(&objStream);
    if (nStatus != Z_STREAM_END) {
        throw std::runtime_error("deflate");
    }
    return strResult;
}

std::string LittleEndian(std::uint64_t nValue, std::size_t nBytes) {
    std::string strResult;
    for (std::size_t i = 0; i < nBytes; ++i) {
        strResult += static_cast<char>(nValue >> (8 * i) & 0xFF);
    }
    return strResult;
}

}  // namespace

std::string MakeDescriptionText(std::size_t nSize) {
    std::string strText = "<?xml version=\"1.0\"?>\n<RegisterDescription>\n";
    std::uint32_t nState = 1;
    // 30,000 bytes that hardly compress, then the same again from the beginning.
    while (strText.size() < nSize) {
        if (strText.size() < 30000) {
            nState = nState * 1664525 + 1013904223;
            strText += static_cast<char>('0' + (nState >> 24) % 64);
        } else {
            strText += strText[strText.size() - 30000];
        }
    }
    strText.resize(nSize);
    return strText;
}

std::string Deflate(const std::string& strText) {
    return Compress(strText, -15);
}

std::string CompressZlib(const std::string& strText) {
    return Compress(strText, 15);
}

std::string MakeZip(const ZIP_ENTRY& objEntry, const std::string& strBehindHeader) {
    return "PK\x03\x04" + LittleEndian(20, 2) + LittleEndian(0, 2) + LittleEndian(objEntry.Method, 2) +
           LittleEndian(0, 8) + LittleEndian(objEntry.CompressedSize, 4) + LittleEndian(objEntry.UncompressedSize, 4) +
           LittleEndian(objEntry.NameLength, 2) + LittleEndian(objEntry.ExtraLength, 2) + strBehindHeader;
}

std::string MakeZip(const std::string& strText) {
    const std::string strDeflated = Deflate(strText);
    ZIP_ENTRY objEntry;
    objEntry.CompressedSize = static_cast<std::uint32_t>(strDeflated.size());
    objEntry.UncompressedSize = static_cast<std::uint32_t>(strText.size());
    objEntry.NameLength = 7;
    objEntry.ExtraLength = 4;
    return MakeZip(objEntry, "cam.xml" + std::string("\x01\x02\x00\x00", 4) + strDeflated);
}
