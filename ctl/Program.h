#pragma once

#include <string>
#include <vector>

#include "ctl/CommandOutput.h"
#include "ctl/ExitCode.h"

/// Runs one command line to its end. Throws nothing: a failure is a text on objErr and an exit code.
/// @param vecArgument  without the program's name
EXIT_CODE RunProgram(const std::vector<std::string>& vecArgument, const COMMAND_OUTPUT& objOutput);
