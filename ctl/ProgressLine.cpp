#include "ctl/ProgressLine.h"

#include <algorithm>
#include <ostream>

CProgressLine::~CProgressLine() {
    if (m_nWidth > 0) {
        m_objErr << '\r' << std::string(m_nWidth, ' ') << '\r' << std::flush;
    }
}

void CProgressLine::Show(std::uint64_t nDone, std::uint64_t nAll, std::string_view strMore) {
    constexpr std::chrono::milliseconds kPause{100};
    const auto nNow = std::chrono::steady_clock::now();
    if (!m_bTerminal || nNow - m_nLastShown < kPause) {
        return;
    }
    m_nLastShown = nNow;
    std::string strLine = GetProgressBar(nDone, nAll).append("  ").append(strMore);
    const std::size_t nWidth = strLine.size();
    strLine.resize(std::max(nWidth, m_nWidth), ' ');
    m_nWidth = nWidth;
    m_objErr << '\r' << strLine << std::flush;
}

std::string GetProgressBar(std::uint64_t nDone, std::uint64_t nAll) {
    constexpr std::uint64_t kWidth = 20;
    const auto nFilled =
        static_cast<std::size_t>(nAll == 0 ? kWidth
                                           : static_cast<double>(std::min(nDone, nAll)) / static_cast<double>(nAll) *
                                                 static_cast<double>(kWidth));
    return '[' + std::string(nFilled, '#') + std::string(kWidth - nFilled, ' ') + "]  " + std::to_string(nDone) + '/' +
           std::to_string(nAll);
}
