#pragma once

#include <optional>
#include <string>

/// Runs a command line in a shell and reads what it prints, at most 16 MiB.
/// @param pCommandLine  a text of the program's own, never one from outside
/// @return nothing if it can't be run, fails or prints more
std::optional<std::string> RunHostCommand(const char* pCommandLine);
