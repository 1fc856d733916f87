#include "tests/TLClass/CollectedLog.h"

#include <fstream>

#include "support/Log.h"

CCollectedLog::CCollectedLog() {
    CLog* const pLog = CLog::GetInstance();
    pLog->SetFileName(m_objDirectory.Path("log"));
    pLog->DisableTimestamp();
    Take();
}

CCollectedLog::~CCollectedLog() {
    CLog* const pLog = CLog::GetInstance();
    pLog->Flush();
    pLog->SetFileName("");
    pLog->EnableTimestamp();
}

std::vector<std::string> CCollectedLog::Take() {
    CLog::GetInstance()->Flush();
    const std::string strFile = m_objDirectory.Path("log");
    std::vector<std::string> vecLine;
    std::ifstream objStream(strFile);
    for (std::string strLine; std::getline(objStream, strLine);) {
        if (!strLine.empty()) {
            vecLine.push_back(strLine);
        }
    }
    std::ofstream objEmptied(strFile, std::ios::trunc);
    return vecLine;
}
