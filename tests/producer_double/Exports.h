#pragma once

#include <string>

#include "tests/producer_double/Call.h"
#include "tests/producer_double/GenTLError.h"
#include "tests/producer_double/Producer.h"

namespace ProducerDouble {

template <class TValue>
TValue& Required(TValue* pValue) {
    if (pValue == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "a null pointer for a value or its place");
    }
    return *pValue;
}

inline std::string Required(const char* pszText) {
    return &Required<const char>(pszText);
}

inline void PutCount(std::uint32_t* pCount, std::size_t nCount) {
    Required(pCount) = static_cast<std::uint32_t>(nCount);
}

inline void PutFlag(bool8_t* pFlag, bool bFlag) {
    if (pFlag != nullptr) {
        *pFlag = bFlag ? 1 : 0;
    }
}

/// The work of the entries that ask an open module, and of those that ask one that it lists.
template <class TModule>
GC_ERROR GetInfo(const char* pszEntry, void* hModule, std::int32_t nCommand, const TARGET& objTarget) {
    return CCall(pszEntry, hModule).Number(nCommand).Out(objTarget).On<TModule>([&](auto& m) {
        m.GetInfo(nCommand, objTarget);
    });
}

template <class TModule>
GC_ERROR GetChildInfo(const char* pszEntry, void* hModule, const char* pszId, std::int32_t nCommand,
                      const TARGET& objTarget) {
    return CCall(pszEntry, hModule).Text(pszId).Number(nCommand).Out(objTarget).On<TModule>([&](auto& m) {
        m.Listed(Required(pszId)).GetInfo(nCommand, objTarget);
    });
}

}  // namespace ProducerDouble
