#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "GenTL/GenTL.h"

namespace producer {

/// The answer to one info command: a GenTL data type and the bytes that belong to it.
///
/// A value; short ones allocate nothing. Texts carry their terminating zero among their bytes.
class CInfoValue {
public:
    static CInfoValue Text(std::string strText);
    static CInfoValue Int32(std::int32_t nValue);
    static CInfoValue Uint32(std::uint32_t nValue);
    static CInfoValue Uint64(std::uint64_t nValue);
    static CInfoValue Size(std::size_t nValue);
    static CInfoValue Bool(bool bValue);
    static CInfoValue Pointer(void* pValue);
    static CInfoValue Bytes(std::span<const std::byte> spanBytes);

    INFO_DATATYPE GetType() const { return m_nType; }

    /// Good as long as this value is neither changed nor destroyed.
    std::span<const std::byte> GetBytes() const;

    /// Hands the value to a consumer by the size protocol of the info entries.
    ///
    /// A null buffer asks for the size alone. Into a buffer that is too small nothing is written at all.
    /// @param pType  may be null, for a consumer that knows the type
    /// @param pSize  in: bytes of the buffer; out: bytes needed or written
    /// @throws CProducerError  GC_ERR_INVALID_PARAMETER without a size, GC_ERR_BUFFER_TOO_SMALL
    void Deliver(INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) const;

private:
    template <class T>
    static CInfoValue Scalar(INFO_DATATYPE nType, T nValue);

    INFO_DATATYPE m_nType = INFO_DATATYPE_UNKNOWN;
    std::string m_strLong;                   // a text without its zero, or the bytes of a buffer
    std::array<std::byte, 8> m_arrScalar{};  // everything else, in the byte order of this machine
    std::size_t m_nScalar = 0;               // bytes used of it; 0 for what stands in m_strLong
};

}  // namespace producer
