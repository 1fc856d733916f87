#pragma once

#include <string>

#include "ctl/FrameImage.h"

/// The bytes of a PNG file that holds the image, and how many bits of its samples are significant. Compressed for
/// speed rather than size: frames come fast.
/// @throws CCommandError  there is too little memory, or the image is larger than the format allows
std::string EncodePng(const IMAGE& objImage);
