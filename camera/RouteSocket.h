#pragma once

#include <cstdint>

namespace camera {

/// Asks the system for routes, and sends nothing.
///
/// A socket that is tied to an adapter takes every host for one on its cable if there is no route to it, and so sends
/// into the void what a camera that knows its subnet alone couldn't send. Not for two threads at once. Belongs to the
/// network namespace of the thread that made it.
class CRouteSocket {
public:
    /// @throws std::system_error
    CRouteSocket();
    ~CRouteSocket();
    CRouteSocket(const CRouteSocket&) = delete;
    CRouteSocket& operator=(const CRouteSocket&) = delete;

    /// @return 0, or the errno of whoever would send there
    [[nodiscard]] int Find(std::uint32_t nAddress) const;

private:
    int m_nSocket = -1;
};

}  // namespace camera
