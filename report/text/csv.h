#pragma once

#include <string>

#include "model.h"

namespace report {

// The runs merged: a line for each case of each group, as RFC 4180 has it.
std::string csvText(const Report& report);

} // namespace report
