#pragma once

#include <optional>
#include <string>

#include "support/CriticalSection.h"

// What separates the parts of a path, and the paths in a list of them.
inline constexpr char kPathSeparator[] = "/";
inline constexpr char kListSeparator[] = ":";

/// The lock of the process environment, never destroyed. The functions below take it by themselves. Whoever calls
/// something that reads or writes the environment inside (local time reads TZ) holds it meanwhile: setting a variable
/// moves memory that an unlocked reader walks.
CCriticalSection& GetEnvironmentLock();

/// @return the value of a variable, nothing when it isn't set.
std::optional<std::string> ReadEnvironment(const char* pName);

/// Sets a variable of this process. A value that is already there is left untouched in memory, for the sake of readers
/// outside our lock.
/// @return false when the platform refuses, as it does for an empty name and for one with an equals sign.
bool SetEnvironment(const char* pName, const std::string& strValue);

/// Sets a variable that is missing or empty, with no gap between test and setting.
/// @return true when the variable has a value now, whoever set it.
bool SetEnvironmentIfMissing(const char* pName, const std::string& strValue);

/// Tells whether anything lies at a path, a directory included; readability isn't looked at.
bool PathExists(const std::string& strPath);

/// The value of a variable and a path beneath it, joined by the path separator. A directory that isn't there yet is
/// created with its parents, which is what the function is for.
/// @return the empty string when the variable is missing or empty, or when there was nothing to create.
/// @throws boost::filesystem::filesystem_error  the file system refuses the look or the creation
std::string GetEnvPath(const char* pName, const std::string& strSubPath);

/// Always true: no version of this platform needs what older ones of the other did.
bool IsWin7OrLater();
