#include "producer/modules/InfoValue.h"

#include <cstring>
#include <utility>

#include "producer/ProducerError.h"

namespace producer {

template <class T>
CInfoValue CInfoValue::Scalar(INFO_DATATYPE nType, T nValue) {
    static_assert(sizeof(T) <= sizeof(m_arrScalar));
    CInfoValue objValue;
    objValue.m_nType = nType;
    objValue.m_nScalar = sizeof(T);
    std::memcpy(objValue.m_arrScalar.data(), &nValue, sizeof(T));
    return objValue;
}

CInfoValue CInfoValue::Text(std::string strText) {
    CInfoValue objValue;
    objValue.m_nType = INFO_DATATYPE_STRING;
    objValue.m_strLong = std::move(strText);
    return objValue;
}

CInfoValue CInfoValue::Int32(std::int32_t nValue) {
    return Scalar(INFO_DATATYPE_INT32, nValue);
}

CInfoValue CInfoValue::Uint32(std::uint32_t nValue) {
    return Scalar(INFO_DATATYPE_UINT32, nValue);
}

CInfoValue CInfoValue::Uint64(std::uint64_t nValue) {
    return Scalar(INFO_DATATYPE_UINT64, nValue);
}

CInfoValue CInfoValue::Size(std::size_t nValue) {
    return Scalar(INFO_DATATYPE_SIZET, nValue);
}

CInfoValue CInfoValue::Bool(bool bValue) {
    return Scalar(INFO_DATATYPE_BOOL8, static_cast<bool8_t>(bValue ? 1 : 0));
}

CInfoValue CInfoValue::Pointer(void* pValue) {
    return Scalar(INFO_DATATYPE_PTR, pValue);
}

CInfoValue CInfoValue::Bytes(std::span<const std::byte> spanBytes) {
    CInfoValue objValue;
    objValue.m_nType = INFO_DATATYPE_BUFFER;
    objValue.m_strLong.assign(reinterpret_cast<const char*>(spanBytes.data()), spanBytes.size());
    return objValue;
}

std::span<const std::byte> CInfoValue::GetBytes() const {
    if (m_nScalar != 0) {
        return std::span(m_arrScalar).first(m_nScalar);
    }
    const std::size_t nZero = m_nType == INFO_DATATYPE_STRING ? 1 : 0;
    return {reinterpret_cast<const std::byte*>(m_strLong.c_str()), m_strLong.size() + nZero};
}

void CInfoValue::Deliver(INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) const {
    if (pSize == nullptr) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, "the pointer to the size is null");
    }
    const std::span<const std::byte> spanBytes = GetBytes();
    if (pBuffer != nullptr) {
        if (*pSize < spanBytes.size()) {
            throw CProducerError(GC_ERR_BUFFER_TOO_SMALL, "the buffer has " + std::to_string(*pSize) + " bytes, " +
                                                              std::to_string(spanBytes.size()) + " are needed");
        }
        std::memcpy(pBuffer, spanBytes.data(), spanBytes.size());
    }
    *pSize = spanBytes.size();
    if (pType != nullptr) {
        *pType = m_nType;
    }
}

}  // namespace producer
