#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "GenApi/FeatureDifference.h"

namespace GenApi_3_0 {

class CFeatureErrors;
class IValue;

/// One walk over the lines of a feature bag that looks at what the device has in their place. Selectors follow the bag,
/// and are put back where they lose their meaning and at the end, also on the way of an exception. Nothing else is
/// written. The node map's lock is held by the caller.
class CFeatureComparison {
public:
    explicit CFeatureComparison(CFeatureErrors& objErrors) : m_objErrors(objErrors) {}
    ~CFeatureComparison();
    CFeatureComparison(const CFeatureComparison&) = delete;
    CFeatureComparison& operator=(const CFeatureComparison&) = delete;

    /// The next line of the bag.
    /// @throws GenericException  the setting can't be compared; the walk can go on
    /// @throws what the port throws
    void Take(IValue& objFeature, const std::string& strValue);

    /// Puts the selectors back. Once, behind the last line.
    /// @return in the order of the bag. A setting that it has several times counts with its last value, as if it had
    ///         been loaded. A selector counts if it is a setting as well, which means streamable.
    std::vector<FEATURE_DIFFERENCE> End();

private:
    /// A setting under certain values of its selectors.
    struct SETTING {
        IValue* Feature;
        FEATURE_DIFFERENCE Values;
    };
    /// A selector that stands in the bag.
    struct POSITION {
        IValue* Selector;
        std::string Original;  ///< in the device, once it has moved
        std::string InBag;
        bool Moved;  ///< it isn't where it was
        bool Set;    ///< it is where the bag wants it
    };

    SETTING& SettingOf(IValue& objFeature, const std::vector<IValue*>& vecSelector);
    POSITION& PositionFor(IValue& objSelector, const std::vector<IValue*>& vecItsSelector, const std::string& strValue);
    void Move(POSITION& objPosition, const std::string& strOnDevice);
    void PutBackSelected(IValue& objSelector, const std::vector<IValue*>& vecItsSelector);
    void PutBack(POSITION& objPosition);
    POSITION* FindPosition(const IValue* pSelector);
    void CountStep();

    CFeatureErrors& m_objErrors;
    std::size_t m_nSteps = 0;
    std::vector<SETTING> m_vecSetting;
    std::unordered_map<std::string, std::size_t> m_mapSetting;  // by name and values of the selectors
    std::vector<POSITION> m_vecPosition;                        // in the order of their first lines
};

}  // namespace GenApi_3_0
