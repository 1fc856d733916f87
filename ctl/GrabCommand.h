#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "ctl/CameraOptions.h"
#include "ctl/CommandOutput.h"
#include "ctl/ExitCode.h"
#include "ctl/FrameWriter.h"

struct GRAB_OPTIONS {
    CAMERA_OPTIONS objCamera;
    std::uint64_t nFrames = 1;
    std::string strFolder = ".";
    FRAME_FILE eFile = FRAME_FILE::Png;
    std::chrono::milliseconds nTimeout{5000};  ///< the longest wait for a frame
    bool bJson = false;
};

/// Takes complete frames from a camera with the settings it has, writes each to a file and tells the rates and the
/// losses. Frames that came incomplete are counted and not written. Ctrl-C ends it in order.
/// @return Incomplete if frames are missing, whether they were lost or never came
EXIT_CODE RunGrab(const GRAB_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
