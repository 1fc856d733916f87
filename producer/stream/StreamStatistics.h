#pragma once

#include <cstdint>

namespace producer {

/// What has come over a stream and what hasn't, since it was opened. A plain value.
struct STREAM_STATISTICS {
    std::uint64_t Packets = 0;             ///< that found their place in a block
    std::uint64_t PacketsMissing = 0;      ///< never came, of blocks that are finished
    std::uint64_t PacketsResent = 0;       ///< came because they were asked for
    std::uint64_t PacketsUnavailable = 0;  ///< the camera said that it has them no more
    std::uint64_t PacketsDuplicate = 0;    ///< came again, or after their block was finished
    std::uint64_t PacketsRefused = 0;      ///< malformed, out of range, or of a size that can't be
    std::uint64_t ResendRequests = 0;      ///< commands sent
    std::uint64_t BlocksDelivered = 0;     ///< incomplete ones among them
    std::uint64_t BlocksIncomplete = 0;    ///< delivered with packets missing or data cut off
    std::uint64_t BlocksLost = 0;          ///< left out of the numbering: nothing of them came
    std::uint64_t BlocksUnderrun = 0;      ///< dropped since no buffer was queued
};

}  // namespace producer
