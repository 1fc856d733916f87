#pragma once

#include <iosfwd>

#include "ctl/FeatureTree.h"

/// One line for each feature, indented by its categories.
void WriteFeatureTree(std::ostream& objOut, const FEATURE& objRoot);

/// One object: a category is an object of its features, a feature one of "kind", "value", "unit", "access", "limits".
/// A feature alone is such an object.
void WriteFeatureTreeJson(std::ostream& objOut, const FEATURE& objRoot);
