#pragma once

#include <cstdint>
#include <string>

/// What a stream counted since it was opened. A count that the producer doesn't have is 0.
struct STREAM_LOSSES {
    std::uint64_t nMissing = 0;    ///< packets that never came
    std::uint64_t nRequests = 0;   ///< to send some again
    std::uint64_t nResent = 0;     ///< packets that came since they were asked for again
    std::uint64_t nDropped = 0;    ///< packets by the system
    std::uint64_t nUnderruns = 0;  ///< frames that found no free buffer
};

/// What a user should check after frames were lost or came incomplete, in lines; empty if the counts tell nothing.
std::string DescribeLosses(const STREAM_LOSSES& objLosses);
