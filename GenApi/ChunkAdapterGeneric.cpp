#include "GenApi/ChunkAdapterGeneric.h"

#include <algorithm>
#include <limits>

#include "GenApi/GCException.h"

namespace GenApi_3_0 {

using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::Throw;

namespace {

bool LiesWithin(const SingleChunkData_t& objChunk, std::uint64_t nBufferLength) {
    if (objChunk.ChunkOffset < 0) {
        return false;
    }
    const auto nOffset = static_cast<std::uint64_t>(objChunk.ChunkOffset);
    return nOffset <= nBufferLength && objChunk.ChunkLength <= nBufferLength - nOffset;
}

int ToCount(std::size_t n) {
    return static_cast<int>(std::min<std::size_t>(n, std::numeric_limits<int>::max()));
}

}  // namespace

bool CChunkAdapterGeneric::CheckBufferLayout(const std::uint8_t* pBuffer, std::int64_t nBufferLength,
                                             const SingleChunkData_t* pChunkData, std::int64_t nNumChunks) {
    if (nNumChunks == 0) {
        return true;
    }
    if (pBuffer == nullptr || pChunkData == nullptr || nBufferLength < 0 || nNumChunks < 0) {
        return false;
    }
    return std::all_of(pChunkData, pChunkData + nNumChunks, [nBufferLength](const SingleChunkData_t& objChunk) {
        return LiesWithin(objChunk, static_cast<std::uint64_t>(nBufferLength));
    });
}

void CChunkAdapterGeneric::AttachBuffer(std::uint8_t* pBuffer, const SingleChunkData_t* pChunkData,
                                        std::int64_t nNumChunks, AttachStatistics_t* pStatistics,
                                        std::int64_t nBufferLength) {
    // Even a caller who vouches for the layout can't mean a chunk that begins before the buffer or wraps around.
    const std::int64_t nLimit =
        nBufferLength == kUncheckedLength ? std::numeric_limits<std::int64_t>::max() : nBufferLength;
    if (!CheckBufferLayout(pBuffer, nLimit, pChunkData, nNumChunks)) {
        AttachChunks(nullptr, {});
        Throw<InvalidArgumentException>("The chunk layout of " + std::to_string(nNumChunks) +
                                        " chunks doesn't fit the buffer of " + std::to_string(nBufferLength) +
                                        " bytes");
    }
    const std::size_t nAttached = AttachChunks(pBuffer, {pChunkData, static_cast<std::size_t>(nNumChunks)});
    if (pStatistics != nullptr) {
        *pStatistics = {ToCount(NumPorts()), ToCount(static_cast<std::size_t>(nNumChunks)), ToCount(nAttached)};
    }
}

}  // namespace GenApi_3_0
