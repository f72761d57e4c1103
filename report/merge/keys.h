#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace report {

// The keys of a run that may change its figures, sorted: without those that name outputs, choose
// tests or set parameters that name the cases anyway.
std::vector<std::string> decisiveKeys(const Run& run);

} // namespace report
