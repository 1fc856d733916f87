#pragma once

#include <string>
#include <vector>

#include "tests/TLClass/TemporaryDirectory.h"

/// Collects what the log of the process is told, from its construction to its end. One at a time.
class CCollectedLog {
public:
    CCollectedLog();
    ~CCollectedLog();
    CCollectedLog(const CCollectedLog&) = delete;
    CCollectedLog& operator=(const CCollectedLog&) = delete;

    /// The lines since the last call, without their time. A line end inside a message gives an empty line, left out
    /// here.
    std::vector<std::string> Take();

private:
    CTemporaryDirectory m_objDirectory;
};
