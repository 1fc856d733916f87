#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "camera/StreamSettings.h"

namespace camera {

enum class ESilence : std::uint8_t {
    No,
    Control,  ///< discovery and FORCEIP are answered, nothing else is
    All,
};

enum class EHostileDescription : std::uint8_t {
    No,
    Length,      ///< the URL claims four gigabytes
    Bomb,        ///< the archive's header claims more than its data holds
    Zip,         ///< the packed data is damaged
    Xml,         ///< it unpacks to a text that breaks off
    Url,         ///< the URL is no URL, fills its field and has no end
    Unreadable,  ///< the URL leads to an address where there is nothing
};

/// What a camera does wrong on purpose. A plain value; at first nothing.
struct FAULTS {
    ESilence Silent = ESilence::No;
    std::chrono::milliseconds Late{0};  ///< each answer is so much late
    bool PendingForever = false;        ///< register and memory commands get PENDING_ACKs and never an answer
    bool WrongLength = false;           ///< headers of answers tell another length than follows
    bool Garbage = false;               ///< bytes at random for answers
    bool Doubled = false;               ///< each answer comes twice
    bool ForeignID = false;             ///< answers carry the ID of another request
    bool Denied = false;                ///< every command but DISCOVERY and FORCEIP is refused with "access denied"
    bool NamesWithoutEnd = false;       ///< text fields are full, unterminated and no UTF-8
    bool Overheat = false;              ///< the sensor passes 90 degrees while images are taken
    bool Flood = false;                 ///< whoever asked last gets a thousand unwanted answers a second
    std::optional<std::uint32_t> VanishAfterCommands;          ///< silent after so many commands
    std::optional<std::chrono::milliseconds> VanishAfterTime;  ///< silent so long after the faults were set
    EHostileDescription Description = EHostileDescription::No;
    STREAM_FAULTS Stream;
};

struct FAULT_HELP {
    std::string_view Form;  ///< "late=MS"
    std::string_view Text;
};

/// Every fault by the form in which SetFault takes it.
std::span<const FAULT_HELP> ListFaults();

/// Switches one fault on.
/// @param strText  NAME or NAME=VALUE, as ListFaults tells
/// @throws std::invalid_argument  with a text for the user
void SetFault(FAULTS& objFaults, std::string_view strText);

}  // namespace camera
