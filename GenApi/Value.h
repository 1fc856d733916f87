#pragma once

#include "GenApi/Base.h"

namespace GenApi_3_0 {

class INode;

/// A node that has a value which can be shown and set as text. The text never depends on a locale.
class IValue : virtual public IBase {
public:
    virtual INode* GetNode() = 0;
    virtual gcstring ToString(bool Verify = false, bool IgnoreCache = false) = 0;
    virtual void FromString(const gcstring& ValueStr, bool Verify = true) = 0;
    virtual bool IsValueCacheValid() const = 0;
};

}  // namespace GenApi_3_0
