#include "producer/wire/WakeSocket.h"

#include <cerrno>

#include <sys/eventfd.h>

namespace producer {

CWakeSocket::CWakeSocket() : m_objDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_objDescriptor.Get() < 0) {
        ThrowSocketError(errno, "make an event descriptor");
    }
}

void CWakeSocket::Signal() noexcept {
    eventfd_write(m_objDescriptor.Get(), 1);  // fails only when it is readable already
}

}  // namespace producer
