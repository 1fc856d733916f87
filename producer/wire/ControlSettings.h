#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace producer {

enum class CONTROL_ACCESS {
    ReadOnly,   ///< asks for no privilege: reads only, beside another application's control
    Control,    ///< reads and writes; others may read
    Exclusive,  ///< reads and writes; others may do neither
};

/// Why a channel was lost.
enum class CONTROL_LOSS {
    NoAnswer,  ///< the camera was silent for longer than the heartbeat allows
    Dropped,   ///< the camera answers, but has taken the control back
    Taken,     ///< the camera answers, and another application controls it
};

/// Told once when a channel is lost, on the heartbeat's thread, without a lock held. It may use the channel, but not
/// close or destroy it, which wait for that thread. The text is for the user.
using ControlLossCallback = std::function<void(CONTROL_LOSS eLoss, const std::string& strText)>;

/// How long a channel waits; each may be changed while it is open.
struct CONTROL_SETTINGS {
    std::chrono::milliseconds AnswerTimeout{300};      ///< for one answer, before the question is repeated
    std::uint32_t Repeats = 3;                         ///< of a question after the first time
    std::chrono::milliseconds LongestPending{20'000};  ///< in all, for a camera that keeps asking for patience
};

/// What has gone over a channel since it was opened.
struct CONTROL_STATISTICS {
    std::uint64_t Commands = 0;  ///< questions asked, repeats not counted
    std::uint64_t Repeats = 0;
    std::uint64_t Timeouts = 0;        ///< questions that stayed without an answer
    std::uint64_t PendingAnswers = 0;  ///< requests for patience
    std::uint64_t RefusedPackets = 0;  ///< malformed, or answers to another question
};

}  // namespace producer
