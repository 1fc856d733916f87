#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

/// A line of progress that is drawn over itself, some times a second at most. Draws nothing where it couldn't be drawn
/// over.
class CProgressLine {
public:
    /// @param bTerminal  whether the stream is a terminal
    CProgressLine(std::ostream& objErr, bool bTerminal) : m_objErr(objErr), m_bTerminal(bTerminal) {}
    /// Takes the line away.
    ~CProgressLine();
    CProgressLine(const CProgressLine&) = delete;
    CProgressLine& operator=(const CProgressLine&) = delete;

    void Show(std::uint64_t nDone, std::uint64_t nAll, std::string_view strMore);

private:
    std::ostream& m_objErr;
    const bool m_bTerminal;
    std::size_t m_nWidth = 0;  // of what stands there
    std::chrono::steady_clock::time_point m_nLastShown;
};

/// "[##########          ]  50/100"
std::string GetProgressBar(std::uint64_t nDone, std::uint64_t nAll);
