#pragma once

#include <string>
#include <vector>

#include "GenApi/FeatureDifference.h"

/// A section of a feature file.
enum class EFeatureFileSection {
    RemoteDevice,  ///< the camera itself
    LocalDevice,   ///< the producer's module for it
    Stream,
};

/// A setting that a feature file and a camera have differently.
struct FEATURE_FILE_DIFFERENCE {
    EFeatureFileSection Section;
    GenApi_3_0::FEATURE_DIFFERENCE Feature;  ///< the bag is the file's, the device what the section belongs to
};

/// What a feature file and a camera have differently.
struct FEATURE_FILE_COMPARISON {
    std::vector<FEATURE_FILE_DIFFERENCE> Differences;  ///< in the order of the file
    std::vector<std::string> NotCompared;              ///< one text for each value that couldn't be
};
