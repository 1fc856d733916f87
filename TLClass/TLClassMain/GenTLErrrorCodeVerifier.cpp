#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"

#include <cstddef>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassLoadTL/ProducerText.h"
#include "support/Log.h"
#include "support/Text.h"
#include "support/ZrException.h"

namespace {

// What a forwarding member answers for an entry that the producer lacks. A producer that answers it from an entry that
// it has reads the same. The standard's own general error, -1001, is another value and keeps the producer's text.
constexpr GC_ERROR kMissingEntry = -1;
constexpr const char* kMissingEntryText = "The TL library is not complete";

// Some classes tell of this place and not of the call's own.
constexpr const char* kThisFile = "GenTLErrrorCodeVerifier";
constexpr const char* kThisFunction = "CGenTLErrorCodeVerifier::ThrowExceptionIfFailed";

std::string DescribeFailure(GC_ERROR nCode, CGenTLLib* pLib) {
    return nCode == kMissingEntry ? kMissingEntryText : GetLastErrorDescription(pLib);
}

}  // namespace

void CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(GC_ERROR nCode, CGenTLLib* pLib, std::string_view strFile,
                                                     int nLine, std::string_view strFunction) {
    if (nCode == GC_ERR_SUCCESS) {
        return;
    }
    const std::string strText = DescribeFailure(nCode, pLib);
    switch (nCode) {
        case GC_ERR_ACCESS_DENIED:
            throw CInvalidAccessError("Access denied:" + strText, kThisFile, 100, kThisFunction);
        case GC_ERR_ZR_DEVICE_OFFLINE:
            throw CDeviceOfflineError(strText, kThisFile, 105, kThisFunction);
        case GC_ERR_TIMEOUT:
            throw CTimeoutError(strText, std::string(strFile), nLine, std::string(strFunction));
        case GC_ERR_INVALID_PARAMETER:
            throw CInvalidParameterError(strText, kThisFile, 115, kThisFunction);
        case GC_ERR_NOT_IMPLEMENTED:
            throw CNotImplementedError(strText, kThisFile, 120, kThisFunction);
        default:
            throw CUnexpectedError(nCode, strText, std::string(strFile), nLine, std::string(strFunction));
    }
}

void CGenTLErrorCodeVerifier::LogIfFailed(GC_ERROR nCode, CGenTLLib* pLib, std::string_view strFile, int nLine,
                                          std::string_view strFunction) noexcept {
    if (nCode == GC_ERR_SUCCESS) {
        return;
    }
    try {
        CLog::GetInstance()->Write(
            FormatFailure(std::string(strFile), nLine, std::string(strFunction), DescribeFailure(nCode, pLib)));
    } catch (...) {
        // Memory ran out: the line is lost, the clean-up that wanted it goes on.
    }
}

std::string GetLastErrorDescription(CGenTLLib* pLib) {
    return ReadProducerText([pLib](char* pBuffer, std::size_t* pSize) {
               GC_ERROR nLastError = GC_ERR_SUCCESS;  // asked for by the entry, of no use here
               return pLib->GCGetLastError(&nLastError, pBuffer, pSize);
           })
        .value_or("Failed to get last error description");
}
