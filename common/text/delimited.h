#pragma once

#include <string>
#include <vector>

// Lines of cells.
namespace common {

// As RFC 4180 has it: it ends with CR LF, and a cell is quoted where it must be.
std::string csvLine(const std::vector<std::string>& cells);

// A text that stays text in Markdown, without control characters, of at most 300 columns.
std::string markdownCell(const std::string& text);
// Of cells that are Markdown already.
std::string markdownRow(const std::vector<std::string>& cells);

} // namespace common
