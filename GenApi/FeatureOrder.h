#pragma once

#include <cstddef>
#include <vector>

namespace GenApi_3_0 {

class INodeMap;
class IValue;

/// References between nodes followed to learn which features change which, at most; large cameras need a million. What
/// is left over then counts as independent.
inline constexpr std::size_t kMaxOrderingSteps = 20'000'000;

/// The streamable features in an order in which they can be written: each behind those whose change drops its value,
/// its limits or its access mode. Apart from that, and among features that change each other, in the order of the
/// categories, and behind these what no category leads to. The node map's lock is held by the caller.
std::vector<IValue*> OrderStreamableFeatures(const INodeMap& objNodeMap);

}  // namespace GenApi_3_0
