#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace GenApi_3_0 {
class INode;
}  // namespace GenApi_3_0

/// What a feature may be set to. Numbers are texts as the feature's value is one: in digits, or as an address is
/// written. What doesn't limit it, or can't be read, is empty.
struct FEATURE_LIMITS {
    std::string strMin;
    std::string strMax;
    std::string strIncrement;  ///< from strMin on; empty for every number between
    std::vector<std::string> vecEntry;
    bool bMoreEntries = false;               ///< there are so many that the last are left out
    std::optional<std::int64_t> nMaxLength;  ///< of a text, in bytes
};

/// The limits as they are now.
FEATURE_LIMITS ReadLimits(GenApi_3_0::INode& objNode);

/// The same in words: "16 to 640 in steps of 4", "Mono8, Mono12". Empty where nothing limits the feature.
std::string DescribeLimits(const FEATURE_LIMITS& objLimits);
