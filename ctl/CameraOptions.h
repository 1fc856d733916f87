#pragma once

#include <chrono>
#include <string>

/// Which camera a command is about, and how long to look for it.
struct CAMERA_OPTIONS {
    std::string strCamera;
    std::string strAdapter;  ///< empty for any
    std::chrono::milliseconds nSearchTime{1000};
};
