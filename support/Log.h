#pragma once

#include <cstddef>
#include <list>
#include <string>

#include "support/CriticalSection.h"
#include "support/LocalTimeText.h"

/// Takes single lines of text from anywhere, most of them failures that can't be thrown.
///
/// GetInstance gives the log of the process, which lives to its end. Any thread may call; the lock is held through the
/// file work, so that a slow disk holds back every writer. The log tells nothing about its own failures.
///
/// Mode 0 drops lines, mode 1 hands them to the platform's debug channel (standard error), mode 2, the one at start,
/// collects them for a file. The file is opened for each burst of 1024 bytes or more, and closed after it. While it
/// can't be opened, as at start for want of a name, lines stay in memory without limit, and each further line tries
/// again.
class CLog {
public:
    CLog() = default;
    /// Writes what waits, if it can.
    ~CLog();
    CLog(const CLog&) = delete;
    CLog& operator=(const CLog&) = delete;

    static CLog* GetInstance();

    /// @param strLine  without its line end
    void Write(const std::string& strLine);

    /// Modes 0 and 1 first write to the file what waits. Any other mode than the three changes nothing.
    void SetMode(int nMode);

    /// The time before each line, there at start.
    void EnableTimestamp();
    void DisableTimestamp();

    void SetFileName(const std::string& strFileName);
    [[nodiscard]] std::string GetFileName() const;

    /// Writes what waits to the file, in mode 2 only.
    void Flush();

private:
    void __WriteBufferToFile();

    mutable CCriticalSection m_csLock;  // guards all below
    std::string m_strFileName;
    bool m_bTimestamp = true;
    int m_nMode = 2;
    std::list<std::string> m_listBuffer;  // lines that wait for the file
    std::size_t m_nBufferedBytes = 0;     // their lengths, line ends not counted
    CLocalTimeText m_objTime;
};
