#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassLoadTL/ProducerText.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "support/ZrException.h"

class CGenTLLib;

/// Reads a text of a producer that must be there.
/// @param fnCall  as ReadProducerText takes it
/// @param strFile, nLine, strFunction  the place of the call, which the exception carries
/// @throws CZrException  the producer refuses, or announces more than kMaxProducerTextSize bytes
template <typename CALL>
std::string ReadPortText(CGenTLLib* pLib, CALL&& fnCall, const std::string& strFile, int nLine,
                         const std::string& strFunction) {
    GC_ERROR nStatus = GC_ERR_SUCCESS;
    std::optional<std::string> strText = ReadProducerText([&](char* pBuffer, std::size_t* pSize) {
        nStatus = fnCall(pBuffer, pSize);
        return nStatus;
    });
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nStatus, pLib, strFile, nLine, strFunction);
    if (!strText) {
        throw CUnexpectedError(
            -1, "The producer announces a text of more than " + std::to_string(kMaxProducerTextSize) + " bytes",
            strFile, nLine, strFunction);
    }
    return *std::move(strText);
}
