#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace gev {

constexpr std::size_t kChunkTrailerSize = 8;

/// One chunk of a buffer: its data, then its ID, then the length of its data.
struct CHUNK {
    std::uint32_t ID = 0;
    std::size_t Offset = 0;  ///< of the data, from the buffer's start
    std::size_t Length = 0;  ///< of the data
};

/// Walks over the chunks of a buffer, from its end, as they can be found only there.
class CChunkWalk {
public:
    /// @param arrData  up to the end of the last chunk; as long as the walk
    explicit CChunkWalk(std::span<const std::byte> arrData) : m_arrData(arrData), m_nEnd(arrData.size()) {}

    /// The chunk before the last one given; nothing at the start of the buffer, and nothing more once a length doesn't
    /// fit in what lies before it.
    std::optional<CHUNK> GetPrevious();

    /// How many bytes before the last chunk given were not walked over.
    std::size_t GetRest() const { return m_nEnd; }

private:
    std::span<const std::byte> m_arrData;
    std::size_t m_nEnd;
};

/// Puts a chunk's ID and length behind its data.
/// @param arrTrailer  the 8 bytes there
void PutChunkTrailer(std::span<std::byte, kChunkTrailerSize> arrTrailer, std::uint32_t nID, std::uint32_t nLength);

}  // namespace gev
