// A program run as a user runs it, and what came of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

// Where standard output goes.
enum class Console {
    read,       // into Outcome::output
    brokenPipe, // into a pipe whose reader has gone
    closed,     // the program starts without the file
    fullDisk,   // to a device that takes no byte
    terminal,   // to a terminal of 60 columns, into Outcome::output
};

struct Command {
    std::string program = {};
    std::vector<std::string> arguments = {};
    std::string directory = ".";               // where it runs
    std::optional<std::string> input = {};     // none: a console at which nobody ever types
    std::vector<std::string> environment = {}; // NAME=value, beside what this process has
    Console console = Console::read;
    // Standard error is a terminal of 60 columns, the same one where the console is one.
    bool errorsOnTerminal = false;
};

struct Outcome {
    int status = -1; // of the exit; -1 when a signal ended the program
    int signal = 0;  // that signal
    std::string output, errors;
    int leastNice = 20; // of the nice values seen while it ran
    long peakKiB = 0;   // never below this process's own peak, which the kernel hands on
};

// Runs the command to its end. A program that hangs is killed after two minutes.
Outcome runCommand(const Command& command);
