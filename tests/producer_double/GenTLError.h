#pragma once

#include <string>

#include "GenTL/GenTL.h"

namespace ProducerDouble {

/// A refusal on its way to the entry, which turns it into a result code and the thread's last error.
class CGenTLError {
public:
    CGenTLError(GC_ERROR nCode, std::string strText) : m_nCode(nCode), m_strText(std::move(strText)) {}

    GC_ERROR Code() const { return m_nCode; }
    const std::string& Text() const { return m_strText; }

private:
    GC_ERROR m_nCode;
    std::string m_strText;
};

[[noreturn]] inline void Refuse(GC_ERROR nCode, std::string strText) {
    throw CGenTLError(nCode, std::move(strText));
}

}  // namespace ProducerDouble
