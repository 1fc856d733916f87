#pragma once

#include <cstddef>
#include <span>

#include "GenTL/GenTL.h"
#include "tests/producer_double/ProducerControl.h"

namespace ProducerDouble {

/// Where an entry puts an answer: the caller's type, buffer and size. The type may be absent, the size may not.
struct TARGET {
    INFO_DATATYPE* pType = nullptr;
    void* pBuffer = nullptr;
    std::size_t* pSize = nullptr;
};

/// The size protocol of the standard: a null buffer asks for the size, one that is too small is refused.
void PutBytes(const TARGET& objTarget, INFO_DATATYPE nType, std::span<const std::byte> bytes);

/// With the terminating zero, copied from a string that has one behind it.
void PutText(const TARGET& objTarget, const std::string& strText);

template <class TValue>
void PutValue(const TARGET& objTarget, INFO_DATATYPE nType, const TValue& nValue) {
    PutBytes(objTarget, nType, std::as_bytes(std::span(&nValue, 1)));
}

inline void PutBool(const TARGET& objTarget, bool bValue) {
    PutValue(objTarget, INFO_DATATYPE_BOOL8, static_cast<bool8_t>(bValue));
}

/// What a test scripted, with all its lies; never writes past the caller's size.
void PutAnswer(const TARGET& objTarget, const ANSWER& objAnswer);

}  // namespace ProducerDouble
