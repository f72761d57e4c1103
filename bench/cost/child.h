#pragma once

#include <filesystem>
#include <string>
#include <vector>

// A program to run, with what it prints thrown away.
struct Child {
    std::filesystem::path program;
    std::vector<std::string> arguments = {};
    std::string setting = {}; // of its environment, NAME=VALUE
    std::filesystem::path directory = {};
};

struct Cost {
    double wallSeconds = 0;
    double processorSeconds = 0; // of it and of the processes that it waited for
    double mebibytes = 0;        // at the most
    int status = 0;              // below 0: ended by that signal
};

// Throws std::runtime_error when it cannot be begun.
Cost costOf(const Child& child);
