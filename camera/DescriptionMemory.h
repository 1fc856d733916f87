#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "camera/Faults.h"
#include "camera/RegisterSpace.h"

namespace camera {

/// The camera's description, zipped. Takes some milliseconds.
/// @param strModel  model name that it tells
std::vector<std::byte> PackDescription(std::string_view strModel);

/// Puts a description into the camera's memory, and where it is into the registers of its URLs.
/// @param strModel   model name that it tells
/// @param vecPacked  what PackDescription made for the model
/// @param eHostile   what is to be wrong with it
void PlaceDescription(CRegisterSpace& objRegisters, std::string_view strModel, const std::vector<std::byte>& vecPacked,
                      EHostileDescription eHostile);

}  // namespace camera
