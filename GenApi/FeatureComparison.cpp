#include "GenApi/FeatureComparison.h"

#include <algorithm>
#include <utility>

#include "GenApi/FeatureBagLimits.h"
#include "GenApi/FeatureErrors.h"
#include "GenApi/FeatureSelectors.h"
#include "GenApi/FeatureText.h"
#include "GenApi/GCException.h"
#include "GenApi/Node.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {

using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

namespace {

bool Contains(const std::vector<IValue*>& vecValue, const IValue* pValue) {
    return std::find(vecValue.begin(), vecValue.end(), pValue) != vecValue.end();
}

}  // namespace

CFeatureComparison::~CFeatureComparison() {
    for (auto it = m_vecPosition.rbegin(); it != m_vecPosition.rend(); ++it) {
        try {
            PutBack(*it);
        } catch (...) {
            // The exception that is already on its way tells more.
        }
    }
}

void CFeatureComparison::Take(IValue& objFeature, const std::string& strValue) {
    const std::optional<std::vector<IValue*>> vecSelector = SelectorsOf(objFeature, [this] { CountStep(); });
    if (!vecSelector) {
        Throw<RuntimeException>("It has too many selectors to be compared");
    }
    POSITION* const pPosition = IsSelector(objFeature) ? &PositionFor(objFeature, *vecSelector, strValue) : nullptr;
    SETTING& objSetting = SettingOf(objFeature, *vecSelector);
    objSetting.Values.InBag = strValue;
    if (pPosition != nullptr) {
        Move(*pPosition, objSetting.Values.OnDevice);
    }
}

/// Reads what the device has when the setting is met first.
CFeatureComparison::SETTING& CFeatureComparison::SettingOf(IValue& objFeature,
                                                           const std::vector<IValue*>& vecSelector) {
    SETTING objSetting{&objFeature, {NameOf(objFeature), {}, {}, {}}};
    std::string strKey = objSetting.Values.Name;
    for (const IValue* pSelector : vecSelector) {
        if (const POSITION* pPosition = FindPosition(pSelector)) {
            const std::string strName = NameOf(*pPosition->Selector);
            if (!pPosition->Set) {
                Throw<RuntimeException>(objSetting.Values.Name + ": " + strName + " can't be set to '" +
                                        pPosition->InBag + "', which it belongs to");
            }
            strKey.append("\n").append(strName).append("\t").append(pPosition->InBag);
            objSetting.Values.Selectors.push_back({strName, pPosition->InBag});
        }
    }
    if (const auto it = m_mapSetting.find(strKey); it != m_mapSetting.end()) {
        return m_vecSetting[it->second];
    }
    const POSITION* pOwn = FindPosition(&objFeature);
    objSetting.Values.OnDevice = pOwn != nullptr && pOwn->Moved ? pOwn->Original : ExactText(objFeature);
    m_mapSetting.emplace(std::move(strKey), m_vecSetting.size());
    return m_vecSetting.emplace_back(std::move(objSetting));
}

/// Where the bag has a selector from now on. What belongs to it can't be compared until it is there.
CFeatureComparison::POSITION& CFeatureComparison::PositionFor(IValue& objSelector,
                                                              const std::vector<IValue*>& vecItsSelector,
                                                              const std::string& strValue) {
    PutBackSelected(objSelector, vecItsSelector);
    POSITION* pPosition = FindPosition(&objSelector);
    if (pPosition == nullptr) {
        pPosition = &m_vecPosition.emplace_back(POSITION{&objSelector, {}, {}, false, false});
    }
    pPosition->InBag = strValue;
    pPosition->Set = false;
    return *pPosition;
}

void CFeatureComparison::Move(POSITION& objPosition, const std::string& strOnDevice) {
    if (!objPosition.Moved) {
        objPosition.Original = strOnDevice;
        // One that needn't move stays untouched.
        objPosition.Moved = !IsSameValue(*objPosition.Selector, objPosition.InBag, strOnDevice);
    }
    if (objPosition.Moved) {
        objPosition.Selector->FromString(objPosition.InBag);
    }
    objPosition.Set = true;
}

/// A device may keep a setting of a selector for each value of those outside it, so before these move it goes back. The
/// lines under the next value begin anew.
void CFeatureComparison::PutBackSelected(IValue& objSelector, const std::vector<IValue*>& vecItsSelector) {
    for (std::size_t i = m_vecPosition.size(); i-- > 0;) {
        CountStep();
        POSITION& objPosition = m_vecPosition[i];
        // In a circle nothing is outside of anything.
        if (!Contains(vecItsSelector, objPosition.Selector) &&
            Contains(SelectorsOf(*objPosition.Selector, [this] { CountStep(); }).value_or(std::vector<IValue*>()),
                     &objSelector)) {
            m_objErrors.Try(NameOf(*objPosition.Selector), [&] { PutBack(objPosition); });
            m_vecPosition.erase(m_vecPosition.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
}

void CFeatureComparison::PutBack(POSITION& objPosition) {
    if (std::exchange(objPosition.Moved, false)) {
        // Unverified: a device may stand at what it wouldn't take now.
        objPosition.Selector->FromString(objPosition.Original, false);
    }
}

CFeatureComparison::POSITION* CFeatureComparison::FindPosition(const IValue* pSelector) {
    const auto it = std::find_if(m_vecPosition.begin(), m_vecPosition.end(), [pSelector](const POSITION& objPosition) {
        return objPosition.Selector == pSelector;
    });
    return it == m_vecPosition.end() ? nullptr : &*it;
}

void CFeatureComparison::CountStep() {
    if (++m_nSteps > kMaxStoreSteps) {
        Throw<RuntimeException>("The node map needs more than " + std::to_string(kMaxStoreSteps) +
                                " steps to be compared");
    }
}

std::vector<FEATURE_DIFFERENCE> CFeatureComparison::End() {
    for (; !m_vecPosition.empty(); m_vecPosition.pop_back()) {
        POSITION& objPosition = m_vecPosition.back();
        m_objErrors.Try(NameOf(*objPosition.Selector), [&] { PutBack(objPosition); });
    }
    std::vector<FEATURE_DIFFERENCE> vecDifference;
    for (SETTING& objSetting : m_vecSetting) {
        IValue& objFeature = *objSetting.Feature;
        const bool bCounts = !IsSelector(objFeature) || objFeature.GetNode()->IsStreamable();
        if (bCounts && !IsSameValue(objFeature, objSetting.Values.InBag, objSetting.Values.OnDevice)) {
            vecDifference.push_back(std::move(objSetting.Values));
        }
    }
    return vecDifference;
}

}  // namespace GenApi_3_0
