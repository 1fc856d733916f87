#pragma once

#include <memory>
#include <string_view>

#include "GenApi/DescriptionModel.h"

namespace GenApi_3_0 {

/// Parses a description.
/// @throws RuntimeException   it is no well-formed XML, has a document type, or is beyond a limit; the message gives
///                            line and column
/// @throws PropertyException  a node without a name
std::unique_ptr<DESCRIPTION_MODEL> ReadDescription(std::string_view strText);

}  // namespace GenApi_3_0
