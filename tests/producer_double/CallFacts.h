#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ProducerDouble {

/// What a rule looks at to know whether it applies to a call.
class ICallFacts {
public:
    virtual const char* Entry() const = 0;
    virtual const std::optional<std::uint64_t>& KeyNumber() const = 0;
    /// Whether the call is on the module of this name, or has the text among its arguments.
    virtual bool Names(const std::string& strName) const = 0;

protected:
    ~ICallFacts() = default;
};

}  // namespace ProducerDouble
