#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

/// What a terminal may be shown of a text that came from a camera or a producer: control characters, which could drive
/// the terminal, and what isn't UTF-8 become "?".
std::string Printable(std::string_view strText);

/// The same for a text of several lines.
std::string PrintableLines(std::string_view strText);

/// Writes rows with their columns aligned, two blanks apart. An empty cell shows as "-"; a row may be shorter than the
/// widest. Cells are made printable.
void WriteTable(std::ostream& objOut, const std::vector<std::vector<std::string>>& vecRow);
