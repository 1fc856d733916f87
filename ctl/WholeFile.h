#pragma once

#include <string>
#include <string_view>

/// Writes a file that appears whole or not at all: under another name first, then under its own, in place of a file of
/// that name.
/// @throws CCommandError  with the path and the reason
void WriteWholeFile(const std::string& strPath, std::string_view strContent);
