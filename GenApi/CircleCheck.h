#pragma once

#include "GenApi/DependencyGraph.h"
#include "GenApi/DescriptionModel.h"

namespace GenApi_3_0 {

/// Makes sure that no node's value stands on itself, and none on a chain longer than is allowed.
///
/// Only what a value is made of counts: limits and access modes of two nodes may well hang on each other's values.
/// @throws RuntimeException  the message names the nodes of the circle
void CheckCircles(const DESCRIPTION_MODEL& objModel, const CDependencyGraph& objGraph);

}  // namespace GenApi_3_0
