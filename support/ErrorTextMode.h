#pragma once

#include <atomic>

/// Selects the text of CZrException::what() for the whole process: 2 gives "{function:line[line]}{message}", every
/// other value "{message}". Starts at 0, and nothing changes it; a build that wants the long form does.
extern std::atomic<int> g_nErrorTextMode;
