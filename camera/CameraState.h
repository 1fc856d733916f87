#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "camera/CameraConfiguration.h"
#include "camera/FeatureAddress.h"

namespace camera {

/// What a camera keeps when it is switched off.
struct CAMERA_STATE {
    std::string UserName;   ///< at most 16 bytes, without a zero
    IP_SETTING Persistent;  ///< whatever was written there
    bool UsePersistent = false;
    std::uint32_t DefaultSet = 0;  ///< a value of UserSetDefault
    /// Of the sets that can be saved: the registers of the features that are, one behind the other in the order of
    /// their table.
    std::array<std::vector<std::byte>, address::kUserSetCount - 1> UserSet;

    friend bool operator==(const CAMERA_STATE&, const CAMERA_STATE&) = default;
};

/// What is told as a camera's state isn't one, or not one of this camera.
class CStateError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Lines for people: a first one that says what it is, names and values, the user sets, "end".
std::string FormatState(const CAMERA_STATE& objState);

/// Reads them. Each name may stand there once; what doesn't is as in objFresh.
/// @param objFresh  of a new camera, with all its user sets
/// @throws CStateError  with the line: it isn't in this form, or a name or a value isn't known. Whether a value lies
///                      within its limits is not looked at.
CAMERA_STATE ParseState(std::string_view strText, const CAMERA_STATE& objFresh);

}  // namespace camera
