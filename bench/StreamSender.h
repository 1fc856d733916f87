#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <netinet/in.h>

#include "tests/network/NetworkNamespace.h"

/// What a sender of images does.
struct SENDER_SETTINGS {
    std::uint32_t Address = 0;  ///< of the receiver, first octet highest
    std::uint16_t Port = 0;
    std::size_t PacketSize = 1500;
    std::size_t ImageSize = 1280 * 1024;
    std::uint32_t Frames = 100;
    bool Joined = false;                 ///< hands many packets to the kernel as one (UDP GSO)
    std::chrono::microseconds Pause{0};  ///< before each image
};

/// Times of the trailers, for those that come after: entry n belongs to block n.
using TrailerTimes = std::vector<std::atomic<std::int64_t>>;

/// Sends images as a camera does, as fast as it can, and waits for nobody. Runs on the calling thread.
/// @param pTimes  nanoseconds of the steady clock, just before each trailer is sent; may be null
/// @return nanoseconds of processor time that this thread took
std::int64_t SendImages(const CNetworkNamespace& objFar, const SENDER_SETTINGS& objSettings, TrailerTimes* pTimes);
