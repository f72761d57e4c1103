#pragma once

#include <string>

#include "model.h"

namespace report {

// For a review: a line a function, what changed, what failed, and a table for each function behind
// a fold. It stays below what a review takes; what is left out is told.
std::string markdownText(const Report& report);

} // namespace report
