// The command line of bench_compare_power.
#pragma once

#include <string>
#include <vector>

struct PowerOptions {
    std::vector<std::string> functions; // of the library, each with a test of its own
    std::vector<int> lengths = {16384, 65536};
    std::vector<double> levels = {0, 0.005, 0.01, 0.02, 0.05}; // shares of a call's time
    int rounds = 4;                                            // of each level but none
    int nullCases = 500;             // compared with nothing added, at least
    int peerRounds = 1;              // of each level that are compared by other means, too
    double peerSeconds = 1;          // for a case and one of these means
    double calibrationSeconds = 0.5; // for a case and level
    std::string corpus = ".";
    std::string results = {}; // file; empty: none is kept
    int cpu = -1;
    bool asMarkdown = false;
    bool showsOnly = false; // the tables of the results that there are
    bool measuresTurnShare = true;
    bool isQuiet = true, isDisturbed = true; // which of both is tried
};

// False: nothing to do but to end with the status.
bool readOptions(int argc, char** argv, PowerOptions& options, int& status);
