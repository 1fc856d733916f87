#pragma once

#include "GenApi/Base.h"

// What an access mode allows, and how two of them combine.

namespace GenApi_3_0 {

constexpr bool IsImplemented(EAccessMode eMode) {
    return eMode != NI;
}
constexpr bool IsAvailable(EAccessMode eMode) {
    return eMode != NI && eMode != NA;
}
constexpr bool IsReadable(EAccessMode eMode) {
    return eMode == RO || eMode == RW;
}
constexpr bool IsWritable(EAccessMode eMode) {
    return eMode == WO || eMode == RW;
}

inline bool IsImplemented(const IBase* p) {
    return p != nullptr && IsImplemented(p->GetAccessMode());
}
inline bool IsAvailable(const IBase* p) {
    return p != nullptr && IsAvailable(p->GetAccessMode());
}
inline bool IsReadable(const IBase* p) {
    return p != nullptr && IsReadable(p->GetAccessMode());
}
inline bool IsWritable(const IBase* p) {
    return p != nullptr && IsWritable(p->GetAccessMode());
}

/// What is allowed by both. Not implemented beats not available, and reading alone with writing alone leaves nothing.
constexpr EAccessMode Combine(EAccessMode a, EAccessMode b) {
    if (a == NI || b == NI) {
        return NI;
    }
    if (a == NA || b == NA) {
        return NA;
    }
    const bool bRead = IsReadable(a) && IsReadable(b);
    const bool bWrite = IsWritable(a) && IsWritable(b);
    if (bRead) {
        return bWrite ? RW : RO;
    }
    return bWrite ? WO : NA;
}

}  // namespace GenApi_3_0
