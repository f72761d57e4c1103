#pragma once

#include <string>

// Where a program's answers go: standard output, and files that are replaced whole or not at all.
namespace common {

// Columns of the terminal behind a descriptor; 0 when it is none.
int terminalWidth(int descriptor);

// Why a file cannot be written; empty when it can. To be asked before long work.
std::string whyNotWritable(const std::string& file);

// False: it could not be done, and standard error says so in the name of the program.
bool writeFile(const std::string& program, const std::string& file, const std::string& text);
bool print(const std::string& program, const std::string& text);

} // namespace common
