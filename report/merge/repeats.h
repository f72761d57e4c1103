#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace report {

// Takes away runs, or comparisons, that are there twice: the same file given again, or a copy of
// it. A sentence for each.
std::vector<std::string> leaveOutRepeats(std::vector<Run>& runs);
std::vector<std::string> leaveOutRepeats(std::vector<Comparison>& comparisons);

// Takes away the tables of runs whose records are there, too: those have all that the tables have,
// and all digits. A sentence for each.
std::vector<std::string> leaveOutTablesOfRecords(std::vector<Run>& runs);

} // namespace report
