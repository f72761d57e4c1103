#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "model.h"

// The cells of a line of comma-separated text. A comma never stands within one.
namespace report {

std::string_view trimmed(std::string_view text);
// Finite and not negative, and nothing else beside it; in any country's settings with a point.
std::optional<double> numberOf(std::string_view text);
// A whole number as such, else the text.
Value valueOf(std::string_view text);
// Replaces cells by those of the line.
void split(std::string_view line, std::vector<std::string_view>& cells);

} // namespace report
