#pragma once

#include <string>

#include "model.h"

namespace report {

// The report as one HTML file for people: plots and tables, with all that they need inside, so that
// it opens without a network. Whatever the texts of the report contain stays text.
std::string pageText(const Report& report);

} // namespace report
