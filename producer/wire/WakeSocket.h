#pragma once

#include "producer/wire/SocketDescriptor.h"

namespace producer {

/// What wakes a thread that waits for packets. Signal may be called from any thread as long as the object lives.
class CWakeSocket {
public:
    /// @throws CProducerError  GC_ERR_RESOURCE_EXHAUSTED
    CWakeSocket();

    /// From now on the descriptor is readable.
    void Signal() noexcept;

    [[nodiscard]] int GetDescriptor() const noexcept { return m_objDescriptor.Get(); }

private:
    CSocketDescriptor m_objDescriptor;
};

}  // namespace producer
