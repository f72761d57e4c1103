#pragma once

#include <string>
#include <vector>

namespace compare {

// A text split into words as a shell splits it: at blanks, but not within '...', "..." or behind
// a backslash. Nothing is expanded. Throws UsageError when a quote is not closed.
std::vector<std::string> splitWords(const std::string& text);

} // namespace compare
