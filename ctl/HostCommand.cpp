#include "ctl/HostCommand.h"

#include <array>
#include <cstddef>
#include <cstdio>

std::optional<std::string> RunHostCommand(const char* pCommandLine) {
    constexpr std::size_t kMostBytes = std::size_t{16} << 20;
    std::FILE* const pPipe = popen(pCommandLine, "re");
    if (pPipe == nullptr) {
        return std::nullopt;
    }
    std::string strText;
    std::array<char, 4096> arrBlock{};
    std::size_t nRead = 0;
    while (strText.size() <= kMostBytes && (nRead = std::fread(arrBlock.data(), 1, arrBlock.size(), pPipe)) > 0) {
        strText.append(arrBlock.data(), nRead);
    }
    const bool bDone = pclose(pPipe) == 0;
    return bDone && strText.size() <= kMostBytes ? std::optional(strText) : std::nullopt;
}
