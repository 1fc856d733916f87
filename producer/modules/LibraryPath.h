#pragma once

#include <string>

namespace producer {

/// @return the whole path of the file that this code was loaded from, as it was when it was loaded; empty when it can't
/// be told.
const std::string& GetLibraryPath();

}  // namespace producer
