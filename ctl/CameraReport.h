#pragma once

#include <iosfwd>
#include <optional>
#include <string_view>
#include <vector>

#include "ctl/Camera.h"

/// One row for each camera, with a row of headings.
void WriteCameraTable(std::ostream& objOut, const std::vector<CAMERA>& vecCamera);

/// One object with the lists "adapters" and "cameras". What isn't known is null; text that isn't UTF-8 is mended.
void WriteCameraJson(std::ostream& objOut, const std::vector<ADAPTER>& vecAdapter,
                     const std::vector<CAMERA>& vecCamera);

/// One object with "camera", as it stands in that list, or null.
void WriteFoundCameraJson(std::ostream& objOut, const std::optional<CAMERA>& objCamera);

/// A line for a camera that has been given an address: where it is, and its state.
void WriteCameraAt(std::ostream& objOut, const CAMERA& objCamera, std::string_view strMore = {});

/// Says, of a camera outside the subnets of its adapter, what is missing before a program can open it.
void TellOfOtherSubnet(std::ostream& objErr, const CAMERA& objCamera);
