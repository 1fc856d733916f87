#pragma once

#include <cstdint>
#include <vector>

#include "GenApi/PropertyReader.h"
#include "GenApi/Types.h"

// Properties that integers and floats have alike and that are more than a number.

namespace GenApi_3_0 {

/// The numbers of a ValidValueSet, in ascending order.
/// @throws PropertyException  one isn't a number, or there are more than kMaxValidValues
std::vector<std::int64_t> ReadValidIntegers(const PROPERTY& objProperty, CPropertyReader& objReader);
std::vector<double> ReadValidFloats(const PROPERTY& objProperty, CPropertyReader& objReader);

/// @throws PropertyException  none of the words for a representation
ERepresentation ReadRepresentation(const PROPERTY& objProperty, CPropertyReader& objReader);

}  // namespace GenApi_3_0
