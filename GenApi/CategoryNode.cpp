#include "GenApi/CategoryNode.h"

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {

bool CCategoryNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::pFeature) {
        m_vecFeature.push_back(objReader.Node(objProperty, ELink::Feature, EWanted::Anything));
        return true;
    }
    return CNodeImpl::Apply(objProperty, objReader);
}

void CCategoryNode::GetFeatures(FeatureList_t& Features) const {
    Features.clear();
    for (CNodeImpl* pFeature : m_vecFeature) {
        if (auto* pValue = dynamic_cast<IValue*>(pFeature)) {
            Features.push_back(pValue);
        }
    }
}

EAccessMode CCategoryNode::SourceAccessMode() {
    // No change spreads to a category, so that what is computed here isn't cached.
    Context().NoteUncachable();
    constexpr std::size_t kFeaturesPerEvaluation = 16;
    Context().NoteWork(m_vecFeature.size() / kFeaturesPerEvaluation);
    EAccessMode eBest = m_vecFeature.empty() ? RO : NI;
    for (CNodeImpl* pFeature : m_vecFeature) {
        const EAccessMode eMode = pFeature->AccessMode();
        if (IsAvailable(eMode)) {
            return RO;
        }
        if (IsImplemented(eMode)) {
            eBest = NA;
        }
    }
    return eBest;
}

gcstring CCategoryNode::ToString(bool /*Verify*/, bool /*IgnoreCache*/) {
    return GetDisplayName();
}

void CCategoryNode::FromString(const gcstring& /*ValueStr*/, bool /*Verify*/) {
    GenICam_3_0::Throw<GenICam_3_0::AccessException>(Subject() + " is a category and has no value to be written");
}

}  // namespace GenApi_3_0
