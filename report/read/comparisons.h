#pragma once

#include <string>

#include "reading.h"

namespace report {

// The text of a comparison that ntkcompare has written with --json. Throws Unreadable when it is
// something else.
Comparison comparisonOf(const std::string& file, const std::string& text);

} // namespace report
