#pragma once

#include <string>

#include "ctl/CameraOptions.h"
#include "ctl/CommandOutput.h"
#include "ctl/ExitCode.h"

struct FORCE_OPTIONS {
    CAMERA_OPTIONS objCamera;
    std::string strAddress;  ///< that the camera is to get
    std::string strMask = "255.255.255.0";
    std::string strGateway;  ///< empty for none
    bool bKeep = false;      ///< let the camera store it as well
    bool bJson = false;
};

/// Forces an address on a camera that answers, in whatever subnet it is: every GigE Vision camera takes one so. It has
/// the address until its next start, unless it is told to keep it.
/// @throws CCommandError  there is no such camera, or an address is none
/// @throws CZrException   another program controls the camera, or it isn't heard with the address
EXIT_CODE RunForce(const FORCE_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
