#pragma once

#include <cstdint>

// What the threads of events have in common. Each of them loops for as long as its stop event isn't signalled:
//
//     CFailurePause objPause;
//     while (!m_pStopEvent->Wait(objPause.GetMs())) {
//         objPause.Note(__TakeOne());
//     }
//
// and is stopped by a signal of the stop event, an EventKill that ends its wait in the producer, and a join.

/// Writes the exception that is being handled to the log: its description if it comes from a node map, otherwise its
/// what(). To be called in a catch block. Event threads let no exception out.
void LogCurrentException() noexcept;

/// How long an event thread waits before its next pass: not at all while all goes well, and longer with each failure
/// in a row. A producer whose calls fail at once, as those for a camera that has gone, would otherwise keep a processor
/// busy at real-time priority and fill the log.
class CFailurePause {
public:
    static constexpr std::uint32_t kFirstMs = 5;
    static constexpr std::uint32_t kLongestMs = 320;

    void Note(bool bSuccess) { m_nMs = bSuccess ? 0 : m_nMs == 0 ? kFirstMs : m_nMs < kLongestMs ? 2 * m_nMs : m_nMs; }
    std::uint32_t GetMs() const { return m_nMs; }

private:
    std::uint32_t m_nMs = 0;
};
