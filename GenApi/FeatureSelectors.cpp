#include "GenApi/FeatureSelectors.h"

#include <algorithm>

#include "GenApi/FeatureBagLimits.h"
#include "GenApi/Node.h"
#include "GenApi/Selector.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {
namespace {

bool IsIn(const std::vector<IValue*>& vecValue, const IValue* pValue) {
    return std::find(vecValue.begin(), vecValue.end(), pValue) != vecValue.end();
}

/// @param vecPath  the features between the first one and this
/// @return false if there are too many
bool AppendSelectors(IValue* pFeature, std::vector<IValue*>& vecPath, std::vector<IValue*>& vecSelector,
                     const std::function<void()>& fnStep) {
    const auto* pSelected = dynamic_cast<const ISelector*>(pFeature->GetNode());
    if (pSelected == nullptr) {
        return true;
    }
    FeatureList_t vecSelecting;
    pSelected->GetSelectingFeatures(vecSelecting);
    vecPath.push_back(pFeature);
    if (vecPath.size() > kMaxSelectorsOfFeature + 1) {
        return false;
    }
    for (IValue* pSelector : vecSelecting) {
        fnStep();  // a description can let thousands of nodes select each of thousands of others
        // Selectors may select each other in a circle, which says nothing of their order.
        if (!IsIn(vecPath, pSelector) && !IsIn(vecSelector, pSelector) && IsName(NameOf(*pSelector))) {
            if (!AppendSelectors(pSelector, vecPath, vecSelector, fnStep) ||
                vecSelector.size() == kMaxSelectorsOfFeature) {
                return false;
            }
            vecSelector.push_back(pSelector);
        }
    }
    vecPath.pop_back();
    return true;
}

}  // namespace

std::string NameOf(IValue& objFeature) {
    return objFeature.GetNode()->GetName().str();
}

bool IsName(const std::string& strName) {
    return !strName.empty() && strName.size() <= kMaxNameLength && strName.front() != '#' &&
           strName.find_first_of("\t\n") == std::string::npos;
}

bool IsSelector(IValue& objFeature) {
    const auto* pSelector = dynamic_cast<const ISelector*>(objFeature.GetNode());
    return pSelector != nullptr && pSelector->IsSelector();
}

std::optional<std::vector<IValue*>> SelectorsOf(IValue& objFeature, const std::function<void()>& fnStep) {
    std::vector<IValue*> vecPath;
    std::vector<IValue*> vecSelector;
    if (!AppendSelectors(&objFeature, vecPath, vecSelector, fnStep)) {
        return std::nullopt;
    }
    return vecSelector;
}

}  // namespace GenApi_3_0
