// The arithmetic of bench_known_cost.
#include <gtest/gtest.h>

#include "chaincost.h"

namespace {

// A round on a core of so many clocks of the counter per clock; reading the counter adds 30.
ChainRound roundAt(double ratio, double multiplicationsOff = 0, double harnessOff = 0) {
    const ChainReading additions = {1000 * ratio + 30, 4000 * ratio + 30, 3000};
    const double slow = ratio * (1 + multiplicationsOff);
    const ChainReading multiplications = {3000 * slow + 30, 12000 * slow + 30, 9000};
    return {additions, multiplications, 9000, 9000 * ratio * (1 + harnessOff)};
}

TEST(ChainCost, WhatReadingTheCounterCostsIsNotInTheRatio) {
    const ChainRound round = roundAt(0.75, 0.01, -0.03);
    EXPECT_DOUBLE_EQ(round.additions.counterPerCoreClock(), 0.75);
    EXPECT_NEAR(round.disagreement(), 0.01, 1e-12);
    EXPECT_NEAR(round.deviation(), -0.03, 1e-12);
}

TEST(ChainCost, RoundsOfOtherFrequenciesAndDisturbedOnesLeaveTheVerdict) {
    const ChainVerdict verdict = judgeChains(
        {roundAt(0.7, 0, 0.002), roundAt(1.3, 0.5, 9), roundAt(0.8, 0.001, 0.001), roundAt(0.9)});
    EXPECT_NEAR(verdict.counterPerCoreClock, 0.85, 1e-12);
    EXPECT_DOUBLE_EQ(verdict.lowestRatio, 0.7);
    EXPECT_DOUBLE_EQ(verdict.highestRatio, 1.3);
    EXPECT_NEAR(verdict.deviation, 0.0015, 1e-9);
    EXPECT_NEAR(verdict.disagreement, 0.0005, 1e-9);
    EXPECT_TRUE(verdict.isWithin(0.02));
}

TEST(ChainCost, EachOfBothDifferencesIsJudgedInBothDirections) {
    struct Case {
        double multiplications, harness;
        bool isWithin;
    };
    for (const Case& c : {Case{0.019, -0.019, true}, Case{0.021, 0, false}, Case{-0.021, 0, false},
                          Case{0, 0.021, false}, Case{0, -0.021, false}}) {
        EXPECT_EQ(judgeChains({roundAt(0.7, c.multiplications, c.harness)}).isWithin(0.02),
                  c.isWithin)
            << c.multiplications << " " << c.harness;
    }
}

} // namespace
