#pragma once

#include <string>
#include <vector>

#include "comparison.h"

// The command line of ntkcompare.
namespace compare {

struct Options {
    Both<std::string> directories; // "own" or a folder
    Both<std::vector<std::string>> keys;
    Settings settings;
    std::string csvFile, jsonFile, markdownFile; // empty: not asked for
    std::string worker;                          // empty: the one beside the program
    bool isSelf = false;
    bool isQuiet = false;
    bool showsAll = false;
    std::string information; // help or version: to be printed in place of comparing
};

// The words without the program's name. Throws UsageError.
Options parseOptions(std::vector<std::string> words);

// "0.5%" or "0.5" to 0.005. Throws UsageError, which names the option.
double parsePercent(const std::string& text, const std::string& option);
// "90", "90s", "1.5m", "2h" to seconds. Throws UsageError, which names the option.
double parseSeconds(const std::string& text, const std::string& option);

} // namespace compare
