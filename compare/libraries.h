#pragma once

#include <string>

namespace compare {

// Throws UsageError unless the folder holds at least one file of the measured library.
void checkLibraries(const std::string& directory);
// The folder of the running program, "/" at its end.
std::string programFolder();
// Of the own build: the folder "lib" beside that one.
std::string ownLibraries();

} // namespace compare
