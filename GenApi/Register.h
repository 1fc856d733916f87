#pragma once

#include <cstdint>

#include "GenApi/Value.h"

namespace GenApi_3_0 {

/// A node that is a block of bytes behind a port.
class IRegister : virtual public IValue {
public:
    /// @param Length  in bytes, exactly the register's
    virtual void Set(const std::uint8_t* pBuffer, std::int64_t Length, bool Verify = true) = 0;
    /// @param Length  in bytes, exactly the register's
    virtual void Get(std::uint8_t* pBuffer, std::int64_t Length, bool Verify = false, bool IgnoreCache = false) = 0;
    /// In bytes.
    virtual std::int64_t GetLength() = 0;
    virtual std::int64_t GetAddress() = 0;
};

}  // namespace GenApi_3_0
