#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "support/WholeFile.h"

/// Reads a file that the user named.
/// @throws CCommandError  with the path and the reason: what is no regular file isn't waited for
std::string ReadUserFile(const std::string& strPath, std::size_t nMost);

/// Writes a file that appears whole or not at all, in place of one of that name.
/// @throws CCommandError  with the path and the reason
void WriteUserFile(const std::string& strPath, std::string_view strContent, EWholeFile eHow);
