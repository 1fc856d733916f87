#pragma once

#include "GenApi/ChunkAdapter.h"

namespace GenApi_3_0 {

/// The chunk adapter for layouts that somebody else has taken apart, a GenTL producer above all.
class CChunkAdapterGeneric : public CChunkAdapter {
public:
    using CChunkAdapter::CChunkAdapter;

    /// Whether every chunk lies within the buffer. No chunks are a good layout.
    static bool CheckBufferLayout(const std::uint8_t* pBuffer, std::int64_t nBufferLength,
                                  const SingleChunkData_t* pChunkData, std::int64_t nNumChunks);

    void AttachBuffer(std::uint8_t* pBuffer, const SingleChunkData_t* pChunkData, std::int64_t nNumChunks,
                      AttachStatistics_t* pStatistics = nullptr,
                      std::int64_t nBufferLength = kUncheckedLength) override;
};

}  // namespace GenApi_3_0
