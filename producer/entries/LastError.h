#pragma once

#include <string_view>

#include "GenTL/GenTL.h"

namespace producer {

/// What GCGetLastError tells: the last failure of an entry on the calling thread. A success leaves it.
struct LAST_ERROR {
    GC_ERROR Code = GC_ERR_SUCCESS;
    char Text[1024] = "No error";  ///< UTF-8 with its zero; kept in place, so that telling of a failure can't fail
};

/// That of the calling thread.
const LAST_ERROR& GetLastErrorOfThread() noexcept;

/// Keeps "ENTRY: TEXT" of the calling thread, cut between two characters where it is too long.
/// @return the code
GC_ERROR KeepLastError(GC_ERROR nCode, std::string_view strEntry, std::string_view strText) noexcept;

/// Puts back what GetLastErrorOfThread gave before.
void RestoreLastError(const LAST_ERROR& objKept) noexcept;

}  // namespace producer
