#include "camera/ZipArchive.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include <zlib.h>

namespace camera {
namespace {

constexpr std::uint32_t kLocalHeader = 0x04034B50;
constexpr std::uint32_t kCentralHeader = 0x02014B50;
constexpr std::uint32_t kEndOfDirectory = 0x06054B50;
constexpr std::uint16_t kVersion = 20;  // the first that knows deflate
constexpr std::uint16_t kDeflated = 8;
constexpr std::uint16_t kFirstOfJanuary = 1 << 5 | 1;  // 1980: the same content makes the same file
constexpr int kRawWindowBits = -15;                    // no header of zlib's own, as ZIP wants it
constexpr int kMemoryLevel = 8;

class CLittleEndianWriter {
public:
    void Put16(std::uint16_t nValue) { Put(nValue, 2); }
    void Put32(std::uint32_t nValue) { Put(nValue, 4); }
    void PutBytes(std::string_view strBytes) {
        for (const char nChar : strBytes) {
            m_vecBytes.push_back(static_cast<std::byte>(nChar));
        }
    }
    [[nodiscard]] std::uint32_t GetSize() const { return static_cast<std::uint32_t>(m_vecBytes.size()); }
    std::vector<std::byte> Take() { return std::move(m_vecBytes); }

private:
    void Put(std::uint32_t nValue, int nBytes) {
        for (int i = 0; i < nBytes; ++i) {
            m_vecBytes.push_back(static_cast<std::byte>(nValue >> 8 * i & 0xFF));
        }
    }

    std::vector<std::byte> m_vecBytes;
};

std::string Deflate(std::string_view strContent) {
    z_stream objStream{};
    if (deflateInit2(&objStream, Z_BEST_COMPRESSION, Z_DEFLATED, kRawWindowBits, kMemoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::runtime_error("the description can't be packed");
    }
    std::string strPacked(deflateBound(&objStream, static_cast<uLong>(strContent.size())), '\0');
    objStream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(strContent.data()));  // zlib doesn't write there
    objStream.avail_in = static_cast<uInt>(strContent.size());
    objStream.next_out = reinterpret_cast<Bytef*>(strPacked.data());
    objStream.avail_out = static_cast<uInt>(strPacked.size());
    const int nResult = deflate(&objStream, Z_FINISH);
    strPacked.resize(objStream.total_out);
    deflateEnd(&objStream);
    if (nResult != Z_STREAM_END) {
        throw std::runtime_error("the description can't be packed");
    }
    return strPacked;
}

}  // namespace

std::vector<std::byte> MakeZipArchive(std::string_view strName, std::string_view strContent) {
    const std::string strPacked = Deflate(strContent);
    const auto nChecksum = static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(strContent.data()), static_cast<uInt>(strContent.size())));
    CLittleEndianWriter objWriter;
    // What both headers say of the entry, from the version to the length of the extra field.
    const auto describe = [&] {
        objWriter.Put16(kVersion);
        objWriter.Put16(0);  // flags
        objWriter.Put16(kDeflated);
        objWriter.Put16(0);  // time
        objWriter.Put16(kFirstOfJanuary);
        objWriter.Put32(nChecksum);
        objWriter.Put32(static_cast<std::uint32_t>(strPacked.size()));
        objWriter.Put32(static_cast<std::uint32_t>(strContent.size()));
        objWriter.Put16(static_cast<std::uint16_t>(strName.size()));
        objWriter.Put16(0);  // extra field
    };
    objWriter.Put32(kLocalHeader);
    describe();
    objWriter.PutBytes(strName);
    objWriter.PutBytes(strPacked);

    const std::uint32_t nDirectory = objWriter.GetSize();
    objWriter.Put32(kCentralHeader);
    objWriter.Put16(kVersion);  // that made it
    describe();
    objWriter.Put16(0);  // comment
    objWriter.Put16(0);  // disk
    objWriter.Put16(0);  // attributes
    objWriter.Put32(0);
    objWriter.Put32(0);  // place of the entry
    objWriter.PutBytes(strName);

    const std::uint32_t nEnd = objWriter.GetSize();
    objWriter.Put32(kEndOfDirectory);
    objWriter.Put32(0);  // disks
    objWriter.Put16(1);  // entries on this one, and in all
    objWriter.Put16(1);
    objWriter.Put32(nEnd - nDirectory);
    objWriter.Put32(nDirectory);
    objWriter.Put16(0);  // comment
    return objWriter.Take();
}

}  // namespace camera
