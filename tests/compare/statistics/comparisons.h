#pragma once

#include <initializer_list>
#include <vector>

#include "comparison.h"

// Comparisons to judge, built from ratios.
namespace compare {

inline Round roundOf(double baseClocks, double changedClocks) {
    Round round;
    round.turns.base.clocks = baseClocks;
    round.turns.changed.clocks = changedClocks;
    return round;
}

// A start of one round for each ratio, new over base.
inline Start startOf(int pass, std::initializer_list<double> ratios) {
    Start start{pass, {}};
    for (const double ratio : ratios) {
        start.rounds.push_back(roundOf(1000, 1000 * ratio));
    }
    return start;
}

// Each ratio is that of a whole start.
inline Case caseOf(const std::string& function, const std::vector<double>& ratios) {
    Case made;
    made.function = function;
    for (const double ratio : ratios) {
        made.starts.push_back(startOf(static_cast<int>(made.starts.size()) + 1, {ratio}));
    }
    return made;
}

} // namespace compare
