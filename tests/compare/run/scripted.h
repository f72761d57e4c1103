// A comparison of scripts (see fakeworker/main.cpp) by real workers.
#pragma once

#include <string>
#include <vector>

#include "../../scratch.h"
#include "runner.h"

namespace compare {

class Scripted {
public:
    Scripted(const std::string& base, const std::string& changed);

    Comparison run();

    // The orders that the workers heard, without skips: "base prepare ntksA".
    std::vector<std::string> log() const;
    int countInLog(const std::string& line) const;

    Plan plan; // one round a pass
    std::vector<Progress> progress;
    int turnsUntilInterrupt = -1; // how often it is asked whether to go on; -1: for ever

private:
    const TemporaryDirectory m_folder;
};

// A script of two functions, with these lines for the first one.
std::string scriptOfTwo(const std::string& linesOfFirst = "");

// What identifies a case in a list: its function and the numbers of its parameters.
std::vector<std::string> namesOf(const std::vector<Case>& cases);

} // namespace compare
