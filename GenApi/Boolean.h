#pragma once

#include "GenApi/Value.h"

namespace GenApi_3_0 {

/// A node that is on or off.
class IBoolean : virtual public IValue {
public:
    virtual void SetValue(bool Value, bool Verify = true) = 0;
    virtual bool GetValue(bool Verify = false, bool IgnoreCache = false) = 0;

    IBoolean& operator=(bool Value) {
        SetValue(Value);
        return *this;
    }
    bool operator()() { return GetValue(); }
};

}  // namespace GenApi_3_0
