#pragma once

#include <string>

namespace compare {

// Throws UsageError unless the folder holds at least one file of the measured library.
void checkLibraries(const std::string& directory);

// What belongs to the running program. In the build tree the worker lies beside it; an installation
// has places of its own for the worker and for the libraries.
struct OwnBuild {
    std::string worker;    // the program that measures one side
    std::string libraries; // the folder
    std::string someData;  // a file that every machine has: one of the libraries
};
OwnBuild ownBuild();

} // namespace compare
