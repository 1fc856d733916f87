#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

/// Counts the frames of a grab as they come, and finds those that never came by the gaps in their IDs.
class CFrameStatistics {
public:
    using TIME = std::chrono::steady_clock::time_point;

    /// @param nFrameID  empty if the producer doesn't tell it
    void Add(std::optional<std::uint64_t> nFrameID, std::size_t nBytes, bool bIncomplete, TIME nTime);

    std::uint64_t GetComplete() const { return m_nComplete; }
    std::uint64_t GetIncomplete() const { return m_nIncomplete; }
    std::uint64_t GetLost() const { return m_nLost; }

    /// Between the first and the last complete frame; 0 with fewer than two.
    double GetSeconds() const;
    /// Of the complete frames, which are those that get into files.
    double GetFramesPerSecond() const;
    /// Of their payload.
    double GetMegabytesPerSecond() const;

    /// "29.97 frames/s, 230.10 MB/s, 2 lost, 1 incomplete"
    std::string GetText() const;

private:
    std::uint64_t m_nComplete = 0;
    std::uint64_t m_nIncomplete = 0;
    std::uint64_t m_nLost = 0;
    std::uint64_t m_nBytesBehindFirst = 0;  // of complete frames; the rate counts from the end of the first
    std::optional<std::uint64_t> m_nLastFrameID;
    TIME m_nFirst;
    TIME m_nLast;
};
