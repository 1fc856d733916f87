#pragma once

#include <chrono>
#include <string>

#include "ctl/CommandOutput.h"
#include "ctl/ExitCode.h"

struct RECOVER_OPTIONS {
    std::string strMAC;                      ///< with "-" or ":" between its parts
    std::string strAddress;                  ///< that the camera is to get
    std::chrono::milliseconds nWait{20000};  ///< how long to look for the camera; 0 for not at all
    bool bDryRun = false;                    ///< show the packets, send nothing
    bool bJson = false;
};

/// Broadcasts the pair of the window's recovery, then looks for the camera until it answers at the address.
/// @throws CCommandError  the MAC or the address is none, no adapter can broadcast, or no producer to look with
EXIT_CODE RunRecover(const RECOVER_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
