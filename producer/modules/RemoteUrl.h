#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "producer/modules/Port.h"

namespace producer {

/// Bytes of the largest description that a camera may claim to have. The largest known come to some megabytes.
inline constexpr std::uint64_t kLargestDescription = std::uint64_t{64} << 20;

/// Reads one of a camera's URL registers. The camera is hostile: it may hold no terminator, no text or nonsense.
///
/// A `Local:` URL is written anew, in the form that every consumer takes. A `File:` URL is refused: a camera doesn't
/// choose which file of this machine is read.
/// @return nothing for what can't be used; strWhy then says why not
/// Source: GigE Vision, first and second URL registers.
std::optional<URL_FACTS> ReadCameraUrl(std::span<const std::byte> spanRegister, std::string& strWhy);

}  // namespace producer
