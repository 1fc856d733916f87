#pragma once

#include <memory>
#include <string>
#include <utility>

#include "GenApi/Node.h"
#include "TLClass/TLClassFeature/IFeatureControl.h"

/// One callback of a client at one feature. Owned by its feature control, which ends the registration before it drops
/// this.
class CFeatureCallbackHandle : public IFeatureControl::IFeatureCallbackHandle {
public:
    CFeatureCallbackHandle(std::string strFeatureName, std::unique_ptr<IFeatureControl::IFeatureCallback> pCallback)
        : m_pCallback(std::move(pCallback)), m_strFeatureName(std::move(strFeatureName)) {}

    /// Lets the node call the callback, with the node map's lock held.
    void Register(GenApi_3_0::INode* pNode);
    /// When it returns, the callback isn't called any more; but for its own call, if it is the one that asks.
    void Deregister();

    const std::string& GetFeatureName() const { return m_strFeatureName; }

private:
    GenApi_3_0::CallbackHandleType m_hCallback = 0;
    const std::shared_ptr<IFeatureControl::IFeatureCallback> m_pCallback;  // the clone; shared with a call that runs
    std::string m_strFeatureName;
};
