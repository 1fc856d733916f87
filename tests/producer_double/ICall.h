#ifndef NORVIK_TESTS_PRODUCER_DOUBLE_ICALL_H
#define NORVIK_TESTS_PRODUCER_DOUBLE_ICALL_H

#include <cstdint>
#include <optional>
#include <string>

#include "tests/producer_double/ProducerControl.h"

namespace ProducerDouble {

/// What rules and records know of one call of an entry.
class ICall {
public:
    virtual const char* Entry() const = 0;
    /// The number that a rule's condition is about.
    virtual const std::optional<std::uint64_t>& KeyNumber() const = 0;
    /// Whether the call is on the module of this name, or has the text among its arguments.
    virtual bool Names(const std::string& strName) const = 0;
    virtual CALL Record() const = 0;

protected:
    ~ICall() = default;
};

}  // namespace ProducerDouble

#endif
