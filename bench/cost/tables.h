#pragma once

#include <filesystem>

// Each prints a Markdown table about the programs of a folder. Both throw std::runtime_error when a
// program cannot be run, or ends as it should not.

// How long until a program has answered a question or refused a wrong key.
void printAnswers(const std::filesystem::path& programs, int runs);

// How processor time and memory grow with the work. What is read and written lies in scratch.
void printGrowth(const std::filesystem::path& programs, const std::filesystem::path& scratch);
