#pragma once

#include <stdexcept>
#include <string>

#include "GenTL/GenTL.h"

namespace producer {

/// What went wrong, as a code of the GenTL interface and a text for the user of the application.
///
/// The one exception that the producer throws by itself. The entries of the library catch it, keep its text as the last
/// error of the calling thread and answer its code; no exception crosses them.
class CProducerError : public std::runtime_error {
public:
    /// @param nCode    a failing GC_ERROR
    /// @param strText  UTF-8, what failed on what, and what to try where that is known
    CProducerError(GC_ERROR nCode, const std::string& strText) : std::runtime_error(strText), m_nCode(nCode) {}

    [[nodiscard]] GC_ERROR GetCode() const noexcept { return m_nCode; }

private:
    GC_ERROR m_nCode;
};

}  // namespace producer
