#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "camera/Faults.h"

namespace camera {

/// An IPv4 configuration, in host order. All zero is none.
struct IP_SETTING {
    std::uint32_t Address = 0;
    std::uint32_t Mask = 0;
    std::uint32_t Gateway = 0;

    friend bool operator==(const IP_SETTING&, const IP_SETTING&) = default;
};

/// Reads "A.B.C.D/N".
/// @throws std::invalid_argument  with a text for the user; also for an address that no host may have
IP_SETTING ParseIPSetting(std::string_view strText);

/// Whether a host may have the address, and the mask is ones, then zeros.
bool IsUsable(const IP_SETTING& objSetting);

/// What a virtual camera is made of.
struct CAMERA_CONFIGURATION {
    std::string Interface;                 ///< network adapter that the camera owns
    std::optional<IP_SETTING> IP;          ///< address at the start, as if FORCEIP had given it; all zero: none at all
    std::optional<IP_SETTING> Persistent;  ///< stored, and used whenever the IP configuration starts
    std::string Model = "Virtual GigE";    ///< at most 31 bytes, like the vendor's texts
    std::string Serial;                    ///< at most 15 bytes; empty: made from the MAC
    std::string UserName;                  ///< at most 15 bytes
    std::chrono::milliseconds Reconfiguration{200};  ///< unreachable so long whenever the IP configuration starts
    FAULTS Faults;
    /// What PackDescription made for the model, for whoever makes many cameras; may be null.
    std::shared_ptr<const std::vector<std::byte>> Description;
    /// What Keep was given by this camera's last life. Comes before Persistent and UserName.
    std::optional<std::string> State;
    /// Gets, as a text, all that a camera keeps when it is switched off, whenever some of it has changed; answers
    /// whether it is safe. May be empty.
    std::function<bool(std::string_view)> Keep;
    std::function<void(std::string_view)> Log;  ///< gets a line for each request and change; may be empty
};

}  // namespace camera
