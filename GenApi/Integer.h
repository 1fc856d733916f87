#pragma once

#include <cstdint>

#include "GenApi/Value.h"

namespace GenApi_3_0 {

/// A node with a 64-bit integer value.
class IInteger : virtual public IValue {
public:
    /// @param Verify  check access, limits and increment first
    virtual void SetValue(std::int64_t Value, bool Verify = true) = 0;
    /// @param Verify       check that the value read lies in its limits
    /// @param IgnoreCache  read from the port even if a value is cached
    virtual std::int64_t GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
    virtual std::int64_t GetMin() = 0;
    virtual std::int64_t GetMax() = 0;
    virtual EIncMode GetIncMode() = 0;
    virtual std::int64_t GetInc() = 0;
    /// @param bounded  only those within the limits
    virtual int64_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    virtual ERepresentation GetRepresentation() = 0;
    virtual gcstring GetUnit() = 0;
    /// Narrows the limits further, for this node map. The increments still count from the description's minimum, so
    /// GetMin may give more than what is imposed here.
    virtual void ImposeMin(std::int64_t Value) = 0;
    virtual void ImposeMax(std::int64_t Value) = 0;

    IInteger& operator=(std::int64_t Value) {
        SetValue(Value);
        return *this;
    }
    std::int64_t operator()() { return GetValue(); }
    std::int64_t operator*() { return GetValue(); }
};

}  // namespace GenApi_3_0
