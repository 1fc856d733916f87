#pragma once

#include <istream>
#include <ostream>
#include <vector>

#include "GenApi/FeatureBagLimits.h"
#include "GenApi/FeatureDifference.h"
#include "GenApi/Types.h"

namespace GenApi_3_0 {

class INodeMap;

/// The settings of a node map as a list of names and values, in an order in which they can be written back.
///
/// A value that belongs to selectors stands behind lines that set these, once for each of their values, and behind the
/// last of them the selectors are put back to what they were. A selector's line is a setting like any other, so the
/// lines mean what they do only in their order, and the last one of a selector is its own value. A value is one line of
/// text: numbers without regard to any locale and exact, enumerations by their entry's name, registers as bytes in
/// hexadecimal.
///
/// A plain value without a lock. StoreToBag, LoadFromBag and CompareWith hold the node map's lock from their first
/// access to their last, so that no other thread moves a selector in between; callbacks run within.
class CFeatureBag {
public:
    /// Fills the bag with the features that are streamable and can be read and written now, and takes the node map's
    /// device name for its own. What is locked while images are taken is therefore missing from a bag stored then. What
    /// it held before is gone. Selectors are moved and put back.
    /// @param nMaxPersistSets  stop after so many values of its selectors for each feature; -1 for no such limit
    /// @param pErrorList       gets a text for each feature that couldn't be stored, or not for all values of its
    ///                         selectors (see kMaxSelectorCombinations), behind those it holds; may be null
    /// @return false if there is any. The others are in the bag all the same.
    /// @throws InvalidArgumentException  no node map, or a limit below -1
    /// @throws RuntimeException          the node map needs more than kMaxStoreSteps steps
    /// @throws whatever the port threw when it has failed for CFeatureErrors::kMaxFailuresInARow features in a row: the
    /// device has gone. After any exception the bag holds what it held before.
    bool StoreToBag(INodeMap* pNodeMap, int nMaxPersistSets = -1, gcstring_vector* pErrorList = nullptr);

    /// Writes the values in their order. One that can't be written doesn't stop those behind it, and nothing is rolled
    /// back.
    /// @param bVerify     check access and limits before each write
    /// @param pErrorList  one text for each failed value is appended to it; may be null
    /// @return false if a value couldn't be written
    /// @throws InvalidArgumentException  no node map; besides what the port threw, as StoreToBag
    bool LoadFromBag(INodeMap* pNodeMap, bool bVerify = true, gcstring_vector* pErrorList = nullptr);

    /// Holds the bag against what the device has now, setting by setting, and changes none: selectors are moved and put
    /// back. Values that can be read now are compared, whether they could be written or not.
    /// @param pErrorList  one text for each value that couldn't be compared is appended to it; may be null
    /// @return the settings that LoadFromBag would try to change
    /// @throws InvalidArgumentException  no node map; besides what the port threw, as StoreToBag
    std::vector<FEATURE_DIFFERENCE> CompareWith(INodeMap* pNodeMap, gcstring_vector* pErrorList = nullptr) const;

    /// What stands in the third line of the text form. Reading a bag leaves it as it is.
    const gcstring& GetBagName() const { return m_strBagName; }
    const gcstring_vector& GetNames() const { return m_vecName; }
    /// As many as there are names.
    const gcstring_vector& GetValues() const { return m_vecValue; }

    friend std::ostream& operator<<(std::ostream& stream, const CFeatureBag& objBag);
    /// Reads from the start of a body to its end: the end of the stream, a line without a tab, or a name that is too
    /// long. In the last two cases the stream is left in its failed state behind that line or the part of the name that
    /// was read.
    /// @throws RuntimeException  the stream is at its end, or its first line lacks the magic GUID
    friend std::istream& operator>>(std::istream& stream, CFeatureBag& objBag);

private:
    gcstring m_strBagName;
    gcstring_vector m_vecName;
    gcstring_vector m_vecValue;
};

std::ostream& operator<<(std::ostream& stream, const CFeatureBag& objBag);
std::istream& operator>>(std::istream& stream, CFeatureBag& objBag);

}  // namespace GenApi_3_0
