#pragma once

#include <cstdint>

#include "GenApi/Value.h"

namespace GenApi_3_0 {

/// A node with a text.
class IString : virtual public IValue {
public:
    virtual void SetValue(const gcstring& Value, bool Verify = true) = 0;
    virtual gcstring GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
    /// In bytes.
    virtual std::int64_t GetMaxLength() = 0;

    gcstring operator()() { return GetValue(); }
};

}  // namespace GenApi_3_0
