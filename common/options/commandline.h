#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace common {

// What all programs have: usage as given, -h, -V, and what stands below the options.
void describeProgram(CLI::App& app, const std::string& usage, const std::string& footer);

// Parses the words, in their order. What help or version have to say; empty: neither was asked for.
// Throws CLI::ParseError for what is wrong.
std::string parseWords(CLI::App& app, std::vector<std::string> words);

} // namespace common
