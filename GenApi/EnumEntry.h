#pragma once

#include <cstdint>

#include "GenApi/Value.h"

namespace GenApi_3_0 {

/// One of the values that an enumeration can take.
class IEnumEntry : virtual public IValue {
public:
    virtual std::int64_t GetValue() = 0;
    virtual gcstring GetSymbolic() const = 0;
    /// The number that the entry stands for where the description gives one, else its value.
    virtual double GetNumericValue() = 0;
    virtual bool IsSelfClearing() = 0;
};

}  // namespace GenApi_3_0
