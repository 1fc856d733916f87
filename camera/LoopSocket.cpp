#include "camera/LoopSocket.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <system_error>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace camera {

CLoopSocket::CLoopSocket() : m_nWake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_nWake < 0) {
        throw std::system_error(errno, std::generic_category(), "make an event descriptor");
    }
}

CLoopSocket::~CLoopSocket() {
    close(m_nWake);
}

void CLoopSocket::Wake() noexcept {
    const int nErrno = errno;  // a signal handler leaves it as it was
    const std::uint64_t nOne = 1;
    // Fails only when the count is full, and then the wait ends anyway.
    [[maybe_unused]] const ssize_t nWritten = write(m_nWake, &nOne, sizeof nOne);
    errno = nErrno;
}

void CLoopSocket::Wait(int nDescriptor, std::optional<std::chrono::steady_clock::time_point> objDeadline) {
    timespec objLeft{};
    if (objDeadline) {
        const auto nLeft =
            std::chrono::duration_cast<std::chrono::nanoseconds>(*objDeadline - std::chrono::steady_clock::now());
        const auto nNanoseconds = nLeft.count() < 0 ? 0 : nLeft.count();
        objLeft.tv_sec = static_cast<std::time_t>(nNanoseconds / 1'000'000'000);
        objLeft.tv_nsec = static_cast<long>(nNanoseconds % 1'000'000'000);
    }
    std::array<pollfd, 2> arrDescriptor = {{{nDescriptor, POLLIN, 0}, {m_nWake, POLLIN, 0}}};
    const int nReady = ppoll(arrDescriptor.data(), arrDescriptor.size(), objDeadline ? &objLeft : nullptr, nullptr);
    if (nReady > 0 && arrDescriptor[1].revents != 0) {
        std::uint64_t nCount = 0;
        [[maybe_unused]] const ssize_t nRead = read(m_nWake, &nCount, sizeof nCount);
    }
}

}  // namespace camera
