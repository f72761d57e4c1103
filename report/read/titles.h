#pragma once

#include <string_view>

#include "model.h"

namespace report {

// Of a line of a table: "Processor", "OS", "Computer", "Library" or "Start".
bool isTitle(std::string_view firstCell);

// Takes the facts of a title line, as far as it has any. Commas of the texts may have become
// blanks, as the writer of tables does it.
void addTitle(std::string_view name, std::string_view text, Facts& facts);

} // namespace report
