#include "ctl/FrameStatistics.h"

#include "ctl/NumberText.h"

namespace {

/// How many IDs lie between two that came one after the other. IDs of 16 bits start again at 1 behind 65535. An ID that
/// isn't greater for another reason says that the camera counts anew, so nothing is known of the gap.
std::uint64_t MissingBetween(std::uint64_t nLast, std::uint64_t nNext) {
    constexpr std::uint64_t kLast16Bit = 65535;
    constexpr std::uint64_t kNearWrap = 1024;
    if (nNext > nLast) {
        return nNext - nLast - 1;
    }
    const bool bWrapped = nLast <= kLast16Bit && nLast > kLast16Bit - kNearWrap && nNext > 0 && nNext < kNearWrap;
    return bWrapped ? kLast16Bit - nLast + nNext - 1 : 0;
}

}  // namespace

void CFrameStatistics::Add(std::optional<std::uint64_t> nFrameID, std::size_t nBytes, bool bIncomplete, TIME nTime) {
    if (bIncomplete) {
        ++m_nIncomplete;
    } else if (++m_nComplete == 1) {
        m_nFirst = m_nLast = nTime;
    } else {
        m_nBytesBehindFirst += nBytes;
        m_nLast = nTime;
    }
    if (nFrameID && m_nLastFrameID) {
        m_nLost += MissingBetween(*m_nLastFrameID, *nFrameID);
    }
    m_nLastFrameID = nFrameID ? nFrameID : m_nLastFrameID;
}

double CFrameStatistics::GetSeconds() const {
    return std::chrono::duration<double>(m_nLast - m_nFirst).count();
}

double CFrameStatistics::GetFramesPerSecond() const {
    const double fSeconds = GetSeconds();
    return fSeconds > 0 ? static_cast<double>(m_nComplete - 1) / fSeconds : 0;
}

double CFrameStatistics::GetMegabytesPerSecond() const {
    constexpr double kMega = 1e6;
    const double fSeconds = GetSeconds();
    return fSeconds > 0 ? static_cast<double>(m_nBytesBehindFirst) / kMega / fSeconds : 0;
}

std::string CFrameStatistics::GetText() const {
    return NumberText(GetFramesPerSecond(), 2) + " frames/s, " + NumberText(GetMegabytesPerSecond(), 2) + " MB/s, " +
           std::to_string(m_nLost) + " lost, " + std::to_string(m_nIncomplete) + " incomplete";
}
