#include "gev/GvspChunk.h"

#include "gev/BigEndian.h"

namespace gev {

std::optional<CHUNK> CChunkWalk::GetPrevious() {
    if (m_nEnd < kChunkTrailerSize) {
        return std::nullopt;
    }
    const std::size_t nDataEnd = m_nEnd - kChunkTrailerSize;
    const std::size_t nLength = Get32(m_arrData, nDataEnd + 4);
    if (nLength > nDataEnd) {
        return std::nullopt;
    }
    m_nEnd = nDataEnd - nLength;
    return CHUNK{Get32(m_arrData, nDataEnd), m_nEnd, nLength};
}

void PutChunkTrailer(std::span<std::byte, kChunkTrailerSize> arrTrailer, std::uint32_t nID, std::uint32_t nLength) {
    Put32(arrTrailer, 0, nID);
    Put32(arrTrailer, 4, nLength);
}

}  // namespace gev
