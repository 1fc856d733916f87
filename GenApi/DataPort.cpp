#include "GenApi/DataPort.h"

#include <algorithm>

#include "GenApi/GCException.h"

namespace GenApi_3_0 {

using GenICam_3_0::AccessException;
using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::Throw;

void CDataPort::Read(void* pBuffer, std::int64_t Address, std::int64_t Length) {
    const auto nSize = static_cast<std::int64_t>(m_spanData.size());
    if (Address < 0 || Length < 0 || Address > nSize || Length > nSize - Address) {
        Throw<OutOfRangeException>(m_strSubject + " holds " + std::to_string(nSize) + " bytes, so " +
                                   std::to_string(Length) + " can't be read at address " + std::to_string(Address));
    }
    const auto spanRead = m_spanData.subspan(static_cast<std::size_t>(Address), static_cast<std::size_t>(Length));
    std::copy(spanRead.begin(), spanRead.end(), static_cast<std::uint8_t*>(pBuffer));
}

void CDataPort::Write(const void* /*pBuffer*/, std::int64_t /*Address*/, std::int64_t /*Length*/) {
    Throw<AccessException>(m_strSubject + " holds data that can only be read");
}

}  // namespace GenApi_3_0
