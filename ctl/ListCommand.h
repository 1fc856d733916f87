#pragma once

#include <chrono>
#include <string>

#include "ctl/CommandOutput.h"
#include "ctl/ExitCode.h"

struct LIST_OPTIONS {
    std::chrono::milliseconds nSearchTime{1000};
    std::string strAdapter;  ///< empty for all
    bool bJson = false;
};

/// Lists the cameras that answer. That there is none is no failure.
/// @throws CCommandError  there is no such adapter
EXIT_CODE RunList(const LIST_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
