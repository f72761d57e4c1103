// One side of a comparison as one measures it with what is at hand elsewhere.
#pragma once

#include <nlohmann/json.hpp>

#include "psturns.h"

// Google Benchmark's repetitions (their processor time), and the quickest call of a plain loop; so
// many seconds for each.
nlohmann::ordered_json measureElsewhere(const psTurns& turns, double seconds);
