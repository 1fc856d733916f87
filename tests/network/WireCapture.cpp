#include "tests/network/WireCapture.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <unistd.h>

CWireCapture::CWireCapture(const CNetworkNamespace& objNear, std::string strNearName, const CNetworkNamespace& objFar,
                           std::string strFarName)
    : m_objNear(objNear),
      m_objFar(objFar),
      m_strNearName(std::move(strNearName)),
      m_strFarName(std::move(strFarName)),
      m_objOut(objFar, m_strFarName),
      m_objIn(objNear, m_strNearName) {}

std::vector<CAPTURED_DATAGRAM> CWireCapture::TakeAll() {
    auto vecAll = m_objOut.TakeAll(m_objNear, m_strNearName);
    const auto vecAnswers = m_objIn.TakeAll(m_objFar, m_strFarName);
    vecAll.insert(vecAll.end(), vecAnswers.begin(), vecAnswers.end());
    std::ranges::sort(vecAll, {}, &CAPTURED_DATAGRAM::Time);
    return vecAll;
}

std::vector<std::string> Analyse(const std::vector<CAPTURED_DATAGRAM>& vecDatagrams, const std::string& strArguments) {
    const auto objFile = std::filesystem::temp_directory_path() / ("wire-" + std::to_string(getpid()) + ".pcap");
    WriteCaptureFile(objFile, vecDatagrams);
    // An empty home: the analyser is to read by its own rules and not by its user's.
    const std::string strCommand =
        "HOME=/nonexistent XDG_CONFIG_HOME= tshark -r " + objFile.string() + " " + strArguments + " 2>/dev/null";
    std::vector<std::string> vecLines(1);
    FILE* const pOutput = popen(strCommand.c_str(), "r");
    for (int nChar = std::fgetc(pOutput); nChar != EOF; nChar = std::fgetc(pOutput)) {
        if (nChar == '\n') {
            vecLines.emplace_back();
        } else {
            vecLines.back() += static_cast<char>(nChar);
        }
    }
    pclose(pOutput);
    std::filesystem::remove(objFile);
    vecLines.pop_back();  // behind the last line's end
    return vecLines;
}
