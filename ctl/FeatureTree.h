#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ctl/FeatureLimits.h"

namespace GenApi_3_0 {
class INode;
class INodeMap;
}  // namespace GenApi_3_0

/// A feature as a user sees it, or a category with what is in it.
struct FEATURE {
    std::string strName;
    std::string strKind;  ///< "category", "integer", "float", "enumeration", "boolean", ...
    bool bReadable = false;
    bool bWritable = false;
    std::optional<std::string> strValue;  ///< empty if it can't be read now
    std::string strUnit;
    FEATURE_LIMITS objLimits;         ///< none if it can't be written now
    std::vector<FEATURE> vecFeature;  ///< of a category
};

/// One feature. A value that the camera refuses to tell is empty.
/// @throws CTimeoutError, CDeviceOfflineError  the camera has gone
FEATURE ReadFeature(GenApi_3_0::INode& objNode);

/// Reads the categories from `Root` down with the values of their features. What isn't implemented is left out, as are
/// categories with nothing in them. A category that contains itself, or lies deeper than any sane one, ends there, and
/// so does a tree of more lines than any camera has features.
/// @param bAll  also what is meant for gurus and for nobody
/// @throws CTimeoutError, CDeviceOfflineError  the camera has gone; one that refuses a feature leaves it without value
/// @return the category Root; empty if there is none
FEATURE ReadFeatureTree(const GenApi_3_0::INodeMap& objNodeMap, bool bAll);

/// The names in the node map that a user may have meant by one that isn't in it: equal but for the case, or containing
/// it. At most five.
std::vector<std::string> FindSimilarFeatures(const GenApi_3_0::INodeMap& objNodeMap, const std::string& strName);
