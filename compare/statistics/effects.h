#pragma once

#include <map>

#include "comparison.h"

namespace compare {

// What each start says, by its pass.
std::map<int, double> effectsByPass(const Case& measured);

} // namespace compare
