// What readings of chains of known length say: the arithmetic of bench_known_cost.
#pragma once

#include <vector>

// The clocks of the time-stamp counter that a short and a long chain of one kind took. Their
// difference is free of what reading the counter costs.
struct ChainReading {
    double shortClocks = 0, longClocks = 0;
    double moreCoreClocks = 0; // that the long one is known to take beyond the short one

    double counterPerCoreClock() const { return (longClocks - shortClocks) / moreCoreClocks; }
};

// A moment of the machine: its core's frequency may be another one in the next.
struct ChainRound {
    ChainReading additions, multiplications;
    double knownCoreClocks = 0; // of the chain that the harness reads
    double harnessClocks = 0;   // of the time-stamp counter

    // By how much the harness's reading differs from the known cost, as a share of it. The ratio of
    // the clocks is that of the additions, so nothing is compared with itself.
    double deviation() const;
    // The same for the two ratios.
    double disagreement() const;
};

struct ChainVerdict {
    double counterPerCoreClock = 0; // the ratio; here and below medians over the rounds
    double lowestRatio = 0, highestRatio = 0;
    double deviation = 0;
    double disagreement = 0;
    bool isWithin(double limit) const; // both of them
};
ChainVerdict judgeChains(const std::vector<ChainRound>& rounds);
