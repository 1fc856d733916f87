#pragma once

#include <cstdint>

#include "TLClass/TLClassInfo/SpecialInfo.h"

/// The version of the GigE Vision standard that a transport layer follows. A field whose feature couldn't be read is 0,
/// and its flag 0.
struct GEV_TL_INFO : SPECIAL_INFO {
    std::int64_t VersionMajor = 0;
    std::int64_t VersionMinor = 0;

    std::uint8_t VersionMajorValid = 0;
    std::uint8_t VersionMinorValid = 0;
};
