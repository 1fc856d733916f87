#include "GenApi/FeatureStore.h"

#include <limits>

#include "GenApi/AccessMode.h"
#include "GenApi/FeatureBagLimits.h"
#include "GenApi/FeatureErrors.h"
#include "GenApi/FeatureOrder.h"
#include "GenApi/FeatureSelectors.h"
#include "GenApi/FeatureText.h"
#include "GenApi/GCException.h"
#include "GenApi/Node.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {

using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

namespace {

// The format has no way to write a line end within a value: whatever stood for it could be meant as it stands.
void CheckValue(std::string_view strValue) {
    if (strValue.find('\n') != std::string_view::npos) {
        Throw<RuntimeException>("Its value has a line end, which can't be stored in a line of text");
    }
}

bool IsSettable(IValue* pValue) {
    const EAccessMode eMode = pValue->GetAccessMode();
    return IsReadable(eMode) && IsWritable(eMode);
}

}  // namespace

/// Sets a selector back to what it was.
class CFeatureStore::CPutBack {
public:
    CPutBack(IValue* pSelector, std::string strOriginal)
        : m_pSelector(pSelector), m_strOriginal(std::move(strOriginal)) {}
    ~CPutBack() {
        try {
            PutBack();
        } catch (...) {
            // The exception that is already on its way tells more.
        }
    }
    CPutBack(const CPutBack&) = delete;
    CPutBack& operator=(const CPutBack&) = delete;

    void Move(const std::string& strValue) {
        m_bMoved = m_bMoved || strValue != m_strOriginal;
        if (m_bMoved) {
            m_pSelector->FromString(strValue);
        }
    }
    void PutBack() {
        if (std::exchange(m_bMoved, false)) {
            // Unverified: a device may stand at what it wouldn't take now.
            m_pSelector->FromString(m_strOriginal, false);
        }
    }
    const std::string& Original() const { return m_strOriginal; }

private:
    IValue* m_pSelector;
    std::string m_strOriginal;
    bool m_bMoved = false;
};

CFeatureStore::CFeatureStore(const INodeMap& objNodeMap, int nMaxPersistSets, CFeatureErrors& objErrors)
    : m_objNodeMap(objNodeMap),
      m_nMaxPersistSets(nMaxPersistSets < 0 ? std::numeric_limits<std::size_t>::max()
                                            : static_cast<std::size_t>(nMaxPersistSets)),
      m_objErrors(objErrors) {}

void CFeatureStore::Run() {
    const std::vector<IValue*> vecFeature = OrderStreamableFeatures(m_objNodeMap);
    std::vector<IValue*> vecSelector;
    std::size_t nFirst = 0;
    // Features that follow each other under the same selectors are stored together, so that these move once for all.
    for (std::size_t i = 0; i < vecFeature.size(); ++i) {
        std::vector<IValue*> vecOwnSelector = SelectorsToMove(vecFeature[i]);
        if (vecOwnSelector != vecSelector) {
            StoreSelected(FeatureSpan(vecFeature).subspan(nFirst, i - nFirst), vecSelector);
            vecSelector = std::move(vecOwnSelector);
            nFirst = i;
        }
    }
    StoreSelected(FeatureSpan(vecFeature).subspan(nFirst), vecSelector);
}

std::vector<IValue*> CFeatureStore::SelectorsToMove(IValue* pFeature) {
    std::optional<std::vector<IValue*>> vecSelector = SelectorsOf(*pFeature, [this] { CountStep(); });
    if (!vecSelector) {
        m_objErrors.Note(NameOf(*pFeature), "It has more than " + std::to_string(kMaxSelectorsOfFeature) +
                                                " selectors, so only its present value is stored");
        return {};
    }
    return *std::move(vecSelector);
}

void CFeatureStore::StoreSelected(FeatureSpan spanFeature, const std::vector<IValue*>& vecSelector) {
    if (spanFeature.empty()) {
        return;
    }
    const std::size_t nLines = m_vecName.size();
    StartLevels(vecSelector);
    if (StoreUnder(0, spanFeature, true)) {
        return;
    }
    m_vecName.resize(nLines);
    m_vecValue.resize(nLines);
    for (IValue* pFeature : spanFeature) {
        m_objErrors.Note(NameOf(*pFeature), "Its selectors have more than " + std::to_string(kMaxSelectorCombinations) +
                                                " values together, so it is stored for the present ones alone");
    }
    StartLevels(vecSelector);
    StoreUnder(0, spanFeature, false);
}

void CFeatureStore::StartLevels(const std::vector<IValue*>& vecSelector) {
    m_nCombinations = 0;
    m_vecLevel.clear();
    for (IValue* pSelector : vecSelector) {
        m_vecLevel.push_back({pSelector, NameOf(*pSelector), std::nullopt, std::nullopt});
    }
}

/// Stores the features for the selectors from a level on, those before it being set.
/// @return false if there are too many combinations
bool CFeatureStore::StoreUnder(std::size_t nLevel, FeatureSpan spanFeature, bool bAllValues) {
    if (nLevel == m_vecLevel.size()) {
        ++m_nCombinations;
        for (IValue* pFeature : spanFeature) {
            StoreFeature(pFeature);
        }
        return true;
    }
    LEVEL& objLevel = m_vecLevel[nLevel];
    objLevel.Current.reset();
    std::optional<std::vector<std::string>> vecValue = std::vector<std::string>();
    const bool bKnown = m_objErrors.Try(objLevel.Name, [&] {
        if (IsSettable(objLevel.Selector)) {
            if (bAllValues) {
                vecValue = ExactTextsOfAllValues(*objLevel.Selector, kMaxSelectorCombinations - m_nCombinations);
            }
            objLevel.Current = ExactText(*objLevel.Selector);
            CheckValue(*objLevel.Current);
        }
    });
    if (!vecValue) {
        return false;
    }
    // What a selector that can't be moved stands at is no business of the bag's either.
    if (!bKnown || !objLevel.Current) {
        objLevel.Current.reset();
        return StoreUnder(nLevel + 1, spanFeature, bAllValues);
    }
    if (vecValue->empty()) {
        vecValue->push_back(*objLevel.Current);
    }
    return StoreForEach(*vecValue, nLevel, spanFeature, bAllValues);
}

bool CFeatureStore::StoreForEach(const std::vector<std::string>& vecValue, std::size_t nLevel, FeatureSpan spanFeature,
                                 bool bAllValues) {
    LEVEL& objLevel = m_vecLevel[nLevel];
    CPutBack objPutBack(objLevel.Selector, *objLevel.Current);
    for (const std::string& strValue : vecValue) {
        if (m_nCombinations >= m_nMaxPersistSets) {
            break;
        }
        CountStep();
        const bool bMoved = m_objErrors.Try(objLevel.Name, [&] {
            CheckValue(strValue);
            objPutBack.Move(strValue);
        });
        if (!bMoved) {
            continue;
        }
        objLevel.Current = strValue;
        if (!StoreUnder(nLevel + 1, spanFeature, bAllValues)) {
            return false;
        }
    }
    m_objErrors.Try(objLevel.Name, [&objPutBack] { objPutBack.PutBack(); });
    if (objLevel.InBag && *objLevel.InBag != objPutBack.Original()) {
        AddLine(objLevel.Name, objPutBack.Original());
    }
    // A device may keep a setting of this selector for each value of those outside it, so the next of these begins
    // anew.
    objLevel.InBag.reset();
    return true;
}

void CFeatureStore::StoreFeature(IValue* pFeature) {
    CountStep();
    const std::string strName = NameOf(*pFeature);
    m_objErrors.Try(strName, [&] {
        if (!IsSettable(pFeature)) {
            return;
        }
        if (!IsName(strName)) {
            Throw<RuntimeException>("Its name can't be stored in a line of text");
        }
        const std::string strValue = ExactText(*pFeature);
        CheckValue(strValue);
        AddSelectorLines();
        AddLine(strName, strValue);
    });
}

// Only before a value that is stored: what has none under a selector needs no lines for it.
void CFeatureStore::AddSelectorLines() {
    for (LEVEL& objLevel : m_vecLevel) {
        if (objLevel.Current && objLevel.InBag != objLevel.Current) {
            AddLine(objLevel.Name, *objLevel.Current);
            objLevel.InBag = objLevel.Current;
        }
    }
}

void CFeatureStore::AddLine(std::string_view strName, std::string_view strValue) {
    m_vecName.emplace_back(strName);
    m_vecValue.emplace_back(strValue);
}

void CFeatureStore::CountStep() {
    if (++m_nSteps > kMaxStoreSteps) {
        Throw<RuntimeException>("The node map needs more than " + std::to_string(kMaxStoreSteps) +
                                " steps to be stored");
    }
}

}  // namespace GenApi_3_0
