#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace GenApi_3_0 {

class IValue;

// What a feature bag has to know of selectors.

std::string NameOf(IValue& objFeature);

/// Whether a line of a feature bag can begin with the name. Names come from the description, which may have anything in
/// them.
bool IsName(const std::string& strName);

/// Whether other features belong to its values.
bool IsSelector(IValue& objFeature);

/// All selectors that decide what the feature's value means, over several levels, each behind its own.
/// @param fnStep  called for each one looked at, which may be very many; what it throws ends the search
/// @return nothing if there are more than kMaxSelectorsOfFeature
std::optional<std::vector<IValue*>> SelectorsOf(IValue& objFeature, const std::function<void()>& fnStep);

}  // namespace GenApi_3_0
