#pragma once

#include "GenApi/NodeVector.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {

/// A node that groups features.
class ICategory : virtual public IValue {
public:
    /// In the order of the description, categories included.
    virtual void GetFeatures(FeatureList_t& Features) const = 0;
};

}  // namespace GenApi_3_0
