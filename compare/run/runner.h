#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "comparison.h"

// The run of a comparison: workers are started, cases walked over, turns taken.
namespace compare {

struct Plan {
    std::string worker;            // path of the worker program
    std::string ownLibraries;      // folder of the own build
    Both<std::string> directories; // "own" or a folder
    Both<std::vector<std::string>> keys;
    Settings settings;
    // Asked while a worker is silent; then its present answer gets Settings::hurrySeconds.
    std::function<bool()> wantsEnd = nullptr;
};

struct Progress {
    std::string caseName;
    double share = 0;       // of the run, 0 to 1
    double secondsLeft = 0; // estimated
};

// Why nothing could be measured; what() is for the user.
class CannotMeasure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Runs the plan. `report` is told of progress, `isInterrupted` is asked after each turn.
// Throws CannotMeasure when there is nothing to compare: no worker starts, no case is left, the end
// was wanted before the cases were known.
Comparison run(const Plan& plan, const std::function<void(const Progress&)>& report,
               const std::function<bool()>& isInterrupted);

} // namespace compare
