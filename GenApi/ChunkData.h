#pragma once

#include <cstddef>
#include <cstdint>

namespace GenApi_3_0 {

/// Where one chunk lies in a buffer. The GenTL standard's SINGLE_CHUNK_DATA has the same 24 bytes.
struct SingleChunkData_t {
    std::uint64_t ChunkID;
    std::ptrdiff_t ChunkOffset;  ///< in bytes, from the start of the buffer
    std::size_t ChunkLength;     ///< in bytes
};

/// What an attachment found.
struct AttachStatistics_t {
    int NumChunkPorts;      ///< chunk ports of the node map
    int NumChunks;          ///< chunks of the layout
    int NumAttachedChunks;  ///< chunk ports that have data now
};

}  // namespace GenApi_3_0
