#include "producer/wire/SocketDescriptor.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "producer/ProducerError.h"

namespace producer {

CSocketDescriptor::~CSocketDescriptor() {
    if (m_nDescriptor >= 0) {
        close(m_nDescriptor);
    }
}

CSocketDescriptor::CSocketDescriptor(CSocketDescriptor&& objOther) noexcept
    : m_nDescriptor(std::exchange(objOther.m_nDescriptor, -1)) {}

CSocketDescriptor& CSocketDescriptor::operator=(CSocketDescriptor&& objOther) noexcept {
    std::swap(m_nDescriptor, objOther.m_nDescriptor);
    return *this;
}

std::string GetErrnoText(int nErrno) {
    return std::generic_category().message(nErrno);
}

void ThrowSocketError(int nErrno, const std::string& strWhat) {
    GC_ERROR nCode = GC_ERR_IO;
    switch (nErrno) {
        case ENODEV:
        case ENXIO:
        case ENETDOWN:
        case ENETUNREACH:
        case EHOSTUNREACH:
        case EADDRNOTAVAIL:
            nCode = GC_ERR_NOT_AVAILABLE;
            break;
        case EMFILE:
        case ENFILE:
        case ENOBUFS:
        case ENOMEM:
            nCode = GC_ERR_RESOURCE_EXHAUSTED;
            break;
        default:
            break;
    }
    throw CProducerError(nCode, strWhat + ": " + GetErrnoText(nErrno));
}

bool WaitReadable(std::initializer_list<int> listDescriptors, Clock::time_point objDeadline) {
    std::array<pollfd, 4> arrPolled{};
    nfds_t nCount = 0;
    for (const int nDescriptor : listDescriptors) {
        if (nDescriptor >= 0 && nCount < arrPolled.size()) {
            arrPolled[nCount++] = {nDescriptor, POLLIN, 0};
        }
    }
    for (;;) {
        const auto objNow = Clock::now();
        // Compared before it is subtracted: from the smallest time point nothing can be.
        const auto objLeft = objDeadline > objNow ? objDeadline - objNow : Clock::duration::zero();
        const auto objSeconds = std::chrono::duration_cast<std::chrono::seconds>(objLeft);
        const timespec objTimeout{objSeconds.count(), std::chrono::nanoseconds(objLeft - objSeconds).count()};
        const int nReady = ppoll(arrPolled.data(), nCount, &objTimeout, nullptr);
        if (nReady > 0) {
            return true;
        }
        if (nReady == 0 || errno != EINTR) {
            return false;
        }
    }
}

}  // namespace producer
