#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace GenApi_3_0 {

class IValue;

// What a feature bag says of one feature: values as exact text, whatever the description says of how they are shown.

/// The value as text that FromString takes for the same value: integers in decimal, floats in the shortest exact form,
/// booleans as 0 and 1, enumerations by their entry's name.
std::string ExactText(IValue& objFeature);

/// Whether a text stands for the value of a feature that ExactText has written: another notation is no other value, nor
/// is the decimal of a float for the nearest one of 4 bytes, which many devices keep.
bool IsSameValue(IValue& objFeature, std::string_view strText, std::string_view strExact);

/// The values that a selector can be set to now, each as ExactText has it. Just the present one for a node that is
/// neither an enumeration nor a boolean nor an integer.
/// @return nothing if there are more than nMax
std::optional<std::vector<std::string>> ExactTextsOfAllValues(IValue& objSelector, std::size_t nMax);

}  // namespace GenApi_3_0
