#pragma once

#include <vector>

#include "GenApi/GCString.h"

namespace GenICam_3_0 {

using gcstring_vector = std::vector<gcstring>;

}  // namespace GenICam_3_0
