#pragma once

#include <optional>
#include <string>
#include <vector>

/// The filters of incoming packets that a ruleset names: chains on the input side that drop by policy or by a rule, and
/// have no rule that lets all UDP in.
/// @param strRuleset  what `nft --json list ruleset` prints
/// @return nothing if that isn't such a text
std::optional<std::vector<std::string>> ReadInputFilters(const std::string& strRuleset);
