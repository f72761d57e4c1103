#pragma once

#include <string>

#include "grid.h"
#include "model.h"

namespace report {

// A summary to read at once: what was measured, a line a function, what failed, how much the
// figures spread; of a comparison what changed.
std::string terminalText(const Report& report, const TerminalStyle& style);

} // namespace report
