#pragma once

#include <cstdint>
#include <string>

/// An address for a camera, as a user has typed it.
/// @return first octet highest
/// @throws CCommandError  it isn't one that a camera can have, or it is this computer's own
std::uint32_t RequireCameraAddress(const std::string& strText);
