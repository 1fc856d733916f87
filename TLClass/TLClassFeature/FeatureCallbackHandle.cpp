#include "TLClass/TLClassFeature/FeatureCallbackHandle.h"

#include "GenApi/NodeCallback.h"

namespace {

/// Calls a client's callback for as long as its handle keeps it, and keeps it through the call itself, in which it may
/// be unregistered.
class CCallClone : public GenApi_3_0::CNodeCallback {
public:
    explicit CCallClone(std::weak_ptr<IFeatureControl::IFeatureCallback> pCallback)
        : CNodeCallback(GenApi_3_0::cbPostInsideLock), m_pCallback(std::move(pCallback)) {}

    void operator()(GenApi_3_0::INode* pNode) const override {
        if (const auto pCallback = m_pCallback.lock()) {
            pCallback->OnFeatureChanged(pNode);
        }
    }

private:
    std::weak_ptr<IFeatureControl::IFeatureCallback> m_pCallback;
};

}  // namespace

void CFeatureCallbackHandle::Register(GenApi_3_0::INode* pNode) {
    m_hCallback = pNode->RegisterCallback(std::make_unique<CCallClone>(m_pCallback).release());
}

void CFeatureCallbackHandle::Deregister() {
    GenApi_3_0::Deregister(m_hCallback);
}
