#pragma once

#include "GenApi/Base.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0 {

/// The relation between a selector and what it selects. Every node has this interface.
class ISelector : virtual public IBase {
public:
    virtual bool IsSelector() const = 0;
    virtual void GetSelectedFeatures(FeatureList_t& SelectedFeatures) const = 0;
    virtual void GetSelectingFeatures(FeatureList_t& SelectingFeatures) const = 0;
};

}  // namespace GenApi_3_0
