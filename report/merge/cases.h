#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace report {

// The cases of these runs, in the order in which they are first met.
std::vector<Case> casesOf(const std::vector<Run>& runs, const std::vector<int>& indices);

// Of two of the table's words for results. One that this program does not know is the worst.
const std::string& worseResult(const std::string& one, const std::string& other);
// Neither a success nor a note: figures that it stands beside are worth nothing.
bool isFailure(const std::string& result);

} // namespace report
