#pragma once

#include <string>
#include <string_view>
#include <vector>

// The text of a feature file: a header of lines "key: value", then sections, each behind a frame line "</---title--->".
// Titles are for people; a reader tells the sections by their order. Pure functions; any thread may call them.

/// The frame line before a section, with the empty line before it.
std::string MakeFeatureFrameLine(std::string_view strTitle);

/// A section's lines without those that hold what begins a frame: a reader would end the section there.
/// @param vecLeftOut  gets what stands before the tab in each such line
std::string WithoutFrames(std::string_view strSection, std::vector<std::string>& vecLeftOut);

/// Cuts a text at its frames: the header, then what each frame is followed by. Blanks and line ends before a piece are
/// dropped, and a piece that would be empty with them. The pieces are views of the text.
/// @throws std::runtime_error  "Failed to parse the %dth line": a frame has no end; the line is that of its start
std::vector<std::string_view> SplitFeatureSections(std::string_view strText);

/// The value of a key of the header: what stands behind the first occurrence of the key, up to a tab or the end of the
/// line. A carriage return before the line end belongs to the value.
/// @throws std::runtime_error  "Can not find %s": the key isn't there, its first occurrence isn't followed by a blank,
///                             a tab or a colon, or the value is empty
std::string GetFeatureHeaderValue(std::string_view strText, std::string_view strKey);
