#pragma once

#include <cstddef>
#include <span>

#include "gev/GvspLeader.h"
#include "gev/GvspTrailer.h"

namespace gev {

/// What an all-in packet carries behind its GVSP header: a leader, a trailer of the same type, then all data.
/// Source: GigE Vision, all-in packet; the order of the parts as the public analyser reads it.
struct GVSP_ALL_IN {
    GVSP_LEADER Leader;
    GVSP_TRAILER Trailer;
    std::span<const std::byte> Data;
};

/// The leader and the trailer; the data go behind them. Empty also when the two types differ.
std::span<std::byte> EncodeAllIn(std::span<std::byte> arrBuffer, const GVSP_LEADER& objLeader,
                                 const GVSP_TRAILER& objTrailer);
/// @return false when leader or trailer is cut short or their types differ.
bool DecodeAllIn(std::span<const std::byte> arrBody, GVSP_ALL_IN& objAllIn);

}  // namespace gev
