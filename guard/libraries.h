#pragma once

#include <string>
#include <vector>

namespace guard {

// Whether the line is the loader's, which has not found what a program needs to start.
bool isLoaderError(const std::string& line);

struct TriedFile {
    std::string path, verdict; // "is not there", "is for another kind of processor"
};
// Where the loader looked for the library that its line names, and what is there. Empty when it
// found one and does not like it: then its line says why.
std::vector<TriedFile> triedFiles(const std::vector<std::string>& words, const std::string& line);

// The same of what the loader wrote for LD_DEBUG=libs.
std::vector<std::string> triedPaths(const std::string& debugText, const std::string& library);
std::string verdictOf(const std::string& path);

} // namespace guard
