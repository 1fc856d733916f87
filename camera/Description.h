#pragma once

#include <string>
#include <string_view>

namespace camera {

/// The GenICam description of the camera's features, made of their table.
/// @param strModel  name of the model, of any characters
std::string WriteDescription(std::string_view strModel);

}  // namespace camera
