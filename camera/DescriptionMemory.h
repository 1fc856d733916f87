#pragma once

#include <string_view>

#include "camera/Faults.h"
#include "camera/RegisterSpace.h"

namespace camera {

/// Puts the description, zipped, into the camera's memory, and where it is into the registers of its URLs.
/// @param strModel  model name that it tells
/// @param eHostile  what is to be wrong with it
void PlaceDescription(CRegisterSpace& objRegisters, std::string_view strModel, EHostileDescription eHostile);

}  // namespace camera
