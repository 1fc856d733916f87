#pragma once

#include <vector>

#include "GenApi/Category.h"
#include "GenApi/NodeImpl.h"

namespace GenApi_3_0 {

/// A Category. It is as available as the most available of its features.
class CCategoryNode : public CNodeImpl, public ICategory {
public:
    using CNodeImpl::CNodeImpl;

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;

    // ICategory
    void GetFeatures(FeatureList_t& Features) const override;

    // IValue
    INode* GetNode() override { return this; }
    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    void FromString(const gcstring& ValueStr, bool Verify = true) override;
    bool IsValueCacheValid() const override { return true; }

    EInterfaceType GetPrincipalInterfaceType() const override { return intfICategory; }
    void* GetInterface(EInterfaceType eType) override {
        return eType == intfICategory ? static_cast<ICategory*>(this) : nullptr;
    }

protected:
    EAccessMode SourceAccessMode() override;

private:
    std::vector<CNodeImpl*> m_vecFeature;
};

}  // namespace GenApi_3_0
