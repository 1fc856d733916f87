#pragma once

#include <iosfwd>

struct FEATURE_FILE_COMPARISON;

/// One line for each difference, below a line of headings; nothing if there is none. Long values are cut.
void WriteDifferences(std::ostream& objOut, const FEATURE_FILE_COMPARISON& objComparison);
/// One object: the list "differences" of objects "module", "feature", "selectors", "file" and "camera", the last two
/// the values, and the list "not_compared" of texts.
void WriteDifferencesJson(std::ostream& objOut, const FEATURE_FILE_COMPARISON& objComparison);
