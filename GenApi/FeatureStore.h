#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "GenApi/Types.h"

namespace GenApi_3_0 {

class CFeatureErrors;
class INodeMap;
class IValue;

/// One walk over the streamable features of a node map that notes their names and values for a feature bag. It moves
/// selectors and puts them back, also on the way of an exception. The node map's lock is held by the caller.
class CFeatureStore {
public:
    /// @param nMaxPersistSets  values of its selectors for each feature, at most; -1 for no such limit
    CFeatureStore(const INodeMap& objNodeMap, int nMaxPersistSets, CFeatureErrors& objErrors);

    /// Once.
    /// @throws RuntimeException  more than kMaxStoreSteps
    void Run();

    gcstring_vector TakeNames() { return std::exchange(m_vecName, {}); }
    gcstring_vector TakeValues() { return std::exchange(m_vecValue, {}); }

private:
    using FeatureSpan = std::span<IValue* const>;

    /// One of the selectors of the features that are being stored.
    struct LEVEL {
        IValue* Selector;
        std::string Name;
        std::optional<std::string> Current;  ///< in the device; nothing if the selector can't be moved
        std::optional<std::string> InBag;    ///< what the lines up to now set it to, if they do
    };
    class CPutBack;

    void StoreSelected(FeatureSpan spanFeature, const std::vector<IValue*>& vecSelector);
    void StartLevels(const std::vector<IValue*>& vecSelector);
    bool StoreUnder(std::size_t nLevel, FeatureSpan spanFeature, bool bAllValues);
    bool StoreForEach(const std::vector<std::string>& vecValue, std::size_t nLevel, FeatureSpan spanFeature,
                      bool bAllValues);
    void StoreFeature(IValue* pFeature);
    void AddSelectorLines();
    void AddLine(std::string_view strName, std::string_view strValue);
    void CountStep();
    std::vector<IValue*> SelectorsToMove(IValue* pFeature);

    const INodeMap& m_objNodeMap;
    std::size_t m_nMaxPersistSets;
    CFeatureErrors& m_objErrors;
    std::vector<LEVEL> m_vecLevel;  // outermost first
    std::size_t m_nCombinations = 0;
    std::size_t m_nSteps = 0;
    gcstring_vector m_vecName;
    gcstring_vector m_vecValue;
};

}  // namespace GenApi_3_0
