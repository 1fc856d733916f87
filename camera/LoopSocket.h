#pragma once

#include <chrono>
#include <optional>

namespace camera {

/// What a camera's loop waits with: for a socket, a point in time, or a wish that another thread or a signal handler
/// makes known.
class CLoopSocket {
public:
    /// @throws std::system_error
    CLoopSocket();
    ~CLoopSocket();
    CLoopSocket(const CLoopSocket&) = delete;
    CLoopSocket& operator=(const CLoopSocket&) = delete;

    /// Ends a wait that runs, or else the next one. For any thread, and for signal handlers.
    void Wake() noexcept;

    /// Returns when the descriptor is readable, the time has come, or Wake was called.
    /// @param objDeadline  nothing waits without end
    void Wait(int nDescriptor, std::optional<std::chrono::steady_clock::time_point> objDeadline);

private:
    int m_nWake = -1;
};

}  // namespace camera
