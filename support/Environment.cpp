#include "support/Environment.h"

#include <cstdlib>

#include <unistd.h>

#include <boost/filesystem.hpp>

#include "support/ScopedLock.h"

CCriticalSection& GetEnvironmentLock() {
    static CCriticalSection& s_csEnvironment = *new CCriticalSection;
    return s_csEnvironment;
}

std::optional<std::string> ReadEnvironment(const char* pName) {
    const CScopedLock objLock(GetEnvironmentLock());
    const char* const pValue = std::getenv(pName);  // NOLINT(concurrency-mt-unsafe): the lock is for that
    return pValue == nullptr ? std::nullopt : std::optional<std::string>(pValue);
}

bool SetEnvironment(const char* pName, const std::string& strValue) {
    const CScopedLock objLock(GetEnvironmentLock());
    // NOLINTNEXTLINE(concurrency-mt-unsafe): likewise
    return ReadEnvironment(pName) == strValue || setenv(pName, strValue.c_str(), 1) == 0;
}

bool SetEnvironmentIfMissing(const char* pName, const std::string& strValue) {
    const CScopedLock objLock(GetEnvironmentLock());
    return !ReadEnvironment(pName).value_or("").empty() || SetEnvironment(pName, strValue);
}

bool PathExists(const std::string& strPath) {
    return access(strPath.c_str(), F_OK) == 0;
}

std::string GetEnvPath(const char* pName, const std::string& strSubPath) {
    // A variable can't be empty on the other platform, and a path at the root of the file system is nobody's wish.
    const std::string strValue = ReadEnvironment(pName).value_or("");
    if (strValue.empty()) {
        return {};
    }
    std::string strPath = strValue + kPathSeparator + strSubPath;
    if (!boost::filesystem::exists(boost::filesystem::status(strPath)) &&
        !boost::filesystem::create_directories(strPath)) {
        return {};
    }
    return strPath;
}

bool IsWin7OrLater() {
    return true;
}
