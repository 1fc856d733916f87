#pragma once

#include "GenApi/Types.h"

namespace GenApi_3_0 {

/// The root of all interfaces. Reached from each other by dynamic_cast; nothing is ever deleted through one.
class IBase {
public:
    virtual EAccessMode GetAccessMode() const = 0;

protected:
    virtual ~IBase() = default;
};

}  // namespace GenApi_3_0
