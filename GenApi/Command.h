#pragma once

#include "GenApi/Value.h"

namespace GenApi_3_0 {

/// A node that makes the device do something.
class ICommand : virtual public IValue {
public:
    virtual void Execute(bool Verify = true) = 0;
    /// Reads back whether the device has finished. A command that can't be read counts as finished.
    virtual bool IsDone(bool Verify = true) = 0;

    void operator()() { Execute(); }
};

}  // namespace GenApi_3_0
