#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace corpus {

// Returns the exit status: 0 when all files are in place, 1 after a failure, 2 after wrong
// arguments.
int runCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

} // namespace corpus
