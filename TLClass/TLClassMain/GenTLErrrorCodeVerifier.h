#pragma once

#include <string>
#include <string_view>

#include "GenTL/GenTL.h"

class CGenTLLib;

/// Turns the result of a call into a producer into a member of the exception family, or into a line of the log.
///
/// A producer keeps its last-error text for each thread, so both forms are called on the thread of the failing call,
/// before its next call into the same producer. No state; any thread.
class CGenTLErrorCodeVerifier {
public:
    /// Returns for GC_ERR_SUCCESS without a call to the producer, and without an allocation, as it stands on the way of
    /// every frame. -1 says that the producer lacks the entry called, and it isn't asked for a text then; for any other
    /// code its last-error text becomes the message.
    /// @param strFile, nLine, strFunction  the place of the call, which the exception carries for most codes
    /// @throws CInvalidAccessError, CDeviceOfflineError, CTimeoutError, CInvalidParameterError, CNotImplementedError
    ///         for the codes that have a class of their own; CUnexpectedError, with the code, for all others
    static void ThrowExceptionIfFailed(GC_ERROR nCode, CGenTLLib* pLib, std::string_view strFile, int nLine,
                                       std::string_view strFunction);

    /// The form for destructors, closing paths and list updates: one line to the log, and never an exception.
    static void LogIfFailed(GC_ERROR nCode, CGenTLLib* pLib, std::string_view strFile, int nLine,
                            std::string_view strFunction) noexcept;
};

/// The producer's text for the last error of this thread, or "Failed to get last error description".
std::string GetLastErrorDescription(CGenTLLib* pLib);
