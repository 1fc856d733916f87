#pragma once

#include <string>

namespace producer {

/// @return the path of the file that this code was loaded from, as the loader was given it; empty when it can't be
/// told.
std::string GetLibraryPath();

}  // namespace producer
