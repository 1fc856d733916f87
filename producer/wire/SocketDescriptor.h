#pragma once

#include <initializer_list>
#include <string>

#include "producer/wire/Clock.h"

namespace producer {

/// A descriptor of the kernel that is closed with its owner. For one thread at a time, but for calls on the number
/// itself.
class CSocketDescriptor {
public:
    explicit CSocketDescriptor(int nDescriptor = -1) noexcept : m_nDescriptor(nDescriptor) {}
    ~CSocketDescriptor();
    CSocketDescriptor(CSocketDescriptor&& objOther) noexcept;
    CSocketDescriptor& operator=(CSocketDescriptor&& objOther) noexcept;

    [[nodiscard]] int Get() const noexcept { return m_nDescriptor; }

private:
    int m_nDescriptor;
};

/// @param nErrno   what the kernel said, saved before anything else was done
/// @param strWhat  the operation and its object, as in "send to 10.1.0.2:3956 on eth0"
/// @throws CProducerError  GC_ERR_NOT_AVAILABLE when the adapter or the way is gone, GC_ERR_RESOURCE_EXHAUSTED for want
///                         of descriptors or memory, else GC_ERR_IO
[[noreturn]] void ThrowSocketError(int nErrno, const std::string& strWhat);

/// @return the kernel's words for an error.
std::string GetErrnoText(int nErrno);

/// Waits until one of the descriptors has something to read or an error to tell, or the time has come. Negative numbers
/// are passed over.
/// @return false when the time came first.
bool WaitReadable(std::initializer_list<int> listDescriptors, Clock::time_point objDeadline);

}  // namespace producer
