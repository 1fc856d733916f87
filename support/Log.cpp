#include "support/Log.h"

#include <atomic>
#include <cstdio>
#include <utility>

#include "support/ScopedLock.h"

namespace {

enum LOG_MODE { kLogOff = 0, kLogDebugOutput = 1, kLogFile = 2 };

constexpr std::size_t kBurstBytes = 1024;

/// One write for the whole line, so that lines of several processes don't mix.
void WriteDebugOutput(std::string& strLine) {
    strLine += '\n';
    std::fwrite(strLine.data(), 1, strLine.size(), stderr);
}

}  // namespace

CLog::~CLog() {
    Flush();
}

CLog* CLog::GetInstance() {
    static std::atomic<CLog*> s_pInstance{nullptr};
    static CCriticalSection& s_csInstance = *new CCriticalSection;
    CLog* pInstance = s_pInstance.load(std::memory_order_acquire);
    if (pInstance == nullptr) {
        const CScopedLock objLock(s_csInstance);
        pInstance = s_pInstance.load(std::memory_order_relaxed);
        if (pInstance == nullptr) {
            pInstance = new CLog;
            s_pInstance.store(pInstance, std::memory_order_release);
        }
    }
    return pInstance;
}

void CLog::Write(const std::string& strLine) {
    const CScopedLock objLock(m_csLock);
    if (m_nMode == kLogOff) {
        return;
    }
    std::string strText;
    if (m_bTimestamp) {
        m_objTime.AppendTo(strText);
    }
    strText += strLine;
    if (m_nMode == kLogDebugOutput) {
        WriteDebugOutput(strText);
        return;
    }
    const std::size_t nLength = strText.size();
    m_listBuffer.push_back(std::move(strText));
    m_nBufferedBytes += nLength;
    if (m_nBufferedBytes >= kBurstBytes) {
        __WriteBufferToFile();
    }
}

void CLog::SetMode(int nMode) {
    if (nMode != kLogOff && nMode != kLogDebugOutput && nMode != kLogFile) {
        return;
    }
    const CScopedLock objLock(m_csLock);
    if (nMode != kLogFile && m_nMode == kLogFile) {
        __WriteBufferToFile();
    }
    m_nMode = nMode;
}

void CLog::EnableTimestamp() {
    const CScopedLock objLock(m_csLock);
    m_bTimestamp = true;
}

void CLog::DisableTimestamp() {
    const CScopedLock objLock(m_csLock);
    m_bTimestamp = false;
}

void CLog::SetFileName(const std::string& strFileName) {
    const CScopedLock objLock(m_csLock);
    m_strFileName = strFileName;
}

std::string CLog::GetFileName() const {
    const CScopedLock objLock(m_csLock);
    return m_strFileName;
}

void CLog::Flush() {
    const CScopedLock objLock(m_csLock);
    if (m_nMode == kLogFile) {
        __WriteBufferToFile();
    }
}

void CLog::__WriteBufferToFile() {
    if (m_listBuffer.empty()) {
        return;
    }
    std::FILE* const pFile = std::fopen(m_strFileName.c_str(), "a");
    if (pFile == nullptr) {
        return;
    }
    for (const std::string& strLine : m_listBuffer) {
        std::fwrite(strLine.data(), 1, strLine.size(), pFile);
        std::fputc('\n', pFile);
    }
    std::fclose(pFile);
    m_nBufferedBytes = 0;
    m_listBuffer.clear();
}
