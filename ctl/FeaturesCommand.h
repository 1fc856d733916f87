#pragma once

#include <string>

#include "ctl/CameraOptions.h"
#include "ctl/CommandOutput.h"
#include "ctl/ExitCode.h"

struct FEATURES_OPTIONS {
    CAMERA_OPTIONS objCamera;
    bool bAll = false;
    bool bJson = false;
    std::string strName;   ///< of one feature
    std::string strValue;  ///< that it gets
    std::string strFile;   ///< a feature file
};

/// Shows all features by category, with their values.
EXIT_CODE RunFeatures(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
/// Prints the value of one feature and nothing else.
EXIT_CODE RunFeatureGet(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
/// Sets a feature, or executes it if it is a command, and prints what it reads as afterwards.
EXIT_CODE RunFeatureSet(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
/// Saves the settings to a feature file. The file appears whole or not at all.
EXIT_CODE RunFeatureSave(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
/// Prints which settings a feature file and the camera have differently, and changes none.
/// @return Different if there are any, or else Incomplete if not all could be compared
EXIT_CODE RunFeatureDiff(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
/// Applies a feature file. A setting that the camera refuses is told, and keeps no other from being applied.
EXIT_CODE RunFeatureLoad(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);
