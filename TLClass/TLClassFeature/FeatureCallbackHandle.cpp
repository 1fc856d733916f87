#include "TLClass/TLClassFeature/FeatureCallbackHandle.h"

#include "GenApi/NodeCallback.h"

void CFeatureCallbackHandle::Register(GenApi_3_0::INode* pNode) {
    m_hCallback = GenApi_3_0::Register(pNode, *m_pCallback, &IFeatureControl::IFeatureCallback::OnFeatureChanged,
                                       GenApi_3_0::cbPostInsideLock);
}

void CFeatureCallbackHandle::Deregister() {
    GenApi_3_0::Deregister(m_hCallback);
}
