// How long a chain must be to slow a function by a share of its time.
#pragma once

#include <algorithm>
#include <cmath>

// What a function's call takes, and what a chain in it adds, in clocks of one kind.
struct CallCost {
    double clocks = 0;          // of the quickest call without a chain
    double clocksWithChain = 0; // with one of so many links
    double links = 0;
    double usualClocks = 0; // of a call as most turns find it

    // A measured call may call the function more than once; so many times a link counts.
    double clocksPerLink() const { return (clocksWithChain - clocks) / links; }
    // At least one link: the smallest step there is.
    long linksFor(double share) const {
        return std::max(1L, std::lround(share * usualClocks / clocksPerLink()));
    }
};
