#pragma once

#include <string>

#include "tests/producer_double/Call.h"
#include "tests/producer_double/GenTLError.h"
#include "tests/producer_double/Producer.h"

namespace ProducerDouble {

template <class TValue>
TValue& Required(TValue* pValue) {
    if (pValue == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "a null pointer for a result");
    }
    return *pValue;
}

inline std::string Required(const char* pszText) {
    if (pszText == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "a null pointer for a text");
    }
    return pszText;
}

/// The open module of this kind.
template <class TModule>
TModule& Opened(CProducer& objProducer, void* h) {
    return *objProducer.Context().objHandles.Find<TModule>(h);
}

}  // namespace ProducerDouble
