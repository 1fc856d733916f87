#pragma once

#include <vector>

namespace GenApi_3_0 {

class INode;
class IValue;

using node_vector = std::vector<INode*>;
using NodeList_t = node_vector;
using value_vector = std::vector<IValue*>;
using FeatureList_t = value_vector;

}  // namespace GenApi_3_0
