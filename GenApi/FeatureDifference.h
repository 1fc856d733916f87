#pragma once

#include <string>
#include <vector>

namespace GenApi_3_0 {

/// A setting that a feature bag and a device have differently. A plain value.
struct FEATURE_DIFFERENCE {
    struct SELECTOR {
        std::string Name;
        std::string Value;  ///< as the bag has it
    };

    std::string Name;
    /// That the bag sets and that decide what the value means, each behind its own.
    std::vector<SELECTOR> Selectors;
    std::string InBag;     ///< as it stands there
    std::string OnDevice;  ///< as a bag of the device would have it
};

}  // namespace GenApi_3_0
