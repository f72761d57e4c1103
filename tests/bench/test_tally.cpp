// Counts over readings whose truth is known, and the demands on them.
#include <gtest/gtest.h>

#include <cmath>

#include "tally.h"

namespace {

Reading reading(double added, double truth, double estimate, double halfWidth, Called called,
                double seconds = 0.5, bool hasNeighbour = false) {
    Reading r{"ntkcompare", "f", added, hasNeighbour, truth, estimate, {}, {}, called, seconds};
    if (halfWidth > 0) {
        r.low = estimate - halfWidth;
        r.high = estimate + halfWidth;
    }
    return r;
}

TEST(Tally, CountsVerdictsIntervalsAndErrorsOfOneGroup) {
    std::vector<Reading> readings = {
        reading(0.01, 1.01, 1.011, 0.002, Called::slower, 0.4),
        reading(0.01, 1.01, 1.005, 0.004, Called::neither, 0.6), // its interval ends below
        reading(0.01, 1.02, 0.98, 0.04, Called::faster, 0.9),    // that of this one at the truth
        reading(0.01, 1.01, 1.01, 0, Called::neither, 2.0),      // without an interval
        reading(0.01, 1.01, 1.02, 0.004, Called::slower, 0.7),   // its interval begins above
        reading(0.01, 1.01, 1.5, 0.1, Called::slower, 9, true),  // of another group
        reading(0.02, 1.02, 1.5, 0.1, Called::slower, 9),
    };
    Reading other = reading(0.01, 1.01, 1.3, 0.1, Called::slower, 9);
    other.method = "other";
    readings.push_back(other);

    const Tally tally = tallyOf(readings, {"ntkcompare", 0.01, false});
    EXPECT_EQ(tally.cases, 5);
    EXPECT_EQ(tally.slower, 2);
    EXPECT_EQ(tally.faster, 1);
    EXPECT_EQ(tally.neither(), 2);
    EXPECT_EQ(tally.withInterval, 4);
    EXPECT_EQ(tally.covered, 2);
    EXPECT_NEAR(tally.medianHalfWidth, 0.004, 1e-12);
    EXPECT_NEAR(tally.medianSeconds, 0.7, 1e-12);
    EXPECT_NEAR(tally.medianError, 0.005 / 1.01, 1e-12);
    EXPECT_NEAR(tally.largestError, 0.04 / 1.02, 1e-12);
    EXPECT_DOUBLE_EQ(tally.lowestEstimate, 0.98);
    EXPECT_DOUBLE_EQ(tally.highestEstimate, 1.02);
}

TEST(Tally, WhatIsRightDependsOnWhatWasAdded) {
    Tally tally;
    tally.cases = 10;
    tally.slower = 5;
    tally.faster = 2;
    EXPECT_EQ(tally.right(0), 3);
    EXPECT_EQ(tally.wrong(0), 7);
    EXPECT_EQ(tally.right(0.01), 5);
    EXPECT_EQ(tally.wrong(0.01), 2);
}

TEST(Tally, GroupsComeByMethodThenByWhatWasAddedThenTheNeighbour) {
    std::vector<Reading> readings = {
        reading(0.02, 1, 1, 0, Called::neither), reading(0, 1, 1, 0, Called::neither, 1, true),
        reading(0, 1, 1, 0, Called::neither), reading(0.02, 1, 1, 0, Called::neither)};
    readings[2].method = "another";
    const std::vector<Group> groups = groupsOf(readings);
    ASSERT_EQ(groups.size(), 3U);
    EXPECT_TRUE(isOf(groups[0], readings[1]));
    EXPECT_TRUE(isOf(groups[1], readings[0]));
    EXPECT_TRUE(isOf(groups[2], readings[2]));
}

// Whether the target whose text holds the words is met; the first of them.
bool isMet(const Results& results, const std::string& words) {
    for (const Target& target : targetsOf(results)) {
        if (target.what.find(words) != std::string::npos) {
            return target.isMet;
        }
    }
    ADD_FAILURE() << "no target: " << words;
    return false;
}

// So many readings, the first of which are called so.
Results results(double added, int cases, int called, Called how, double seconds = 0.5) {
    Results all;
    for (int i = 0; i < cases; ++i) {
        all.readings.push_back(reading(added, 1 + added, 1 + added, 0.001,
                                       i < called ? how : Called::neither, seconds));
    }
    return all;
}

TEST(Targets, TellWhetherEnoughVerdictsAreRight) {
    struct Case {
        double added;
        int cases, called;
        Called how;
        const char* words;
        bool isMet;
    };
    const Case cases[] = {
        {0, 500, 5, Called::slower, "nothing added, quiet", true},
        {0, 500, 6, Called::slower, "nothing added, quiet", false},
        {0, 500, 6, Called::faster, "nothing added, quiet", false},
        {0, 499, 0, Called::slower, "nothing added, quiet", false}, // too few to tell
        {0.005, 100, 80, Called::slower, "0.5% added, 10 s a case", true},
        {0.005, 100, 79, Called::slower, "0.5% added, 10 s a case", false},
        {0.01, 100, 95, Called::slower, "1% added: called", true},
        {0.01, 100, 94, Called::slower, "1% added: called", false},
        {0.01, 100, 100, Called::faster, "1% added: called", false},
        {0.02, 100, 99, Called::slower, "2% added: called", true},
        {0.02, 100, 98, Called::slower, "2% added: called", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(isMet(results(c.added, c.cases, c.called, c.how), c.words), c.isMet)
            << c.words << ", " << c.called << " of " << c.cases;
    }
}

TEST(Targets, JudgeCoverageTimeAndTheShareOfTurns) {
    Results wide = results(0.01, 20, 20, Called::slower);
    wide.readings[0].truth = 1.5;
    EXPECT_TRUE(isMet(wide, "holds the true value"));
    wide.readings[1].truth = 1.5;
    EXPECT_FALSE(isMet(wide, "holds the true value"));

    EXPECT_TRUE(isMet(results(0.01, 3, 3, Called::slower, 1.005), "measured time"));
    EXPECT_FALSE(isMet(results(0.01, 3, 3, Called::slower, 1.02), "measured time"));
    for (const Target& target : targetsOf(results(0.005, 3, 3, Called::slower, 9))) {
        EXPECT_EQ(target.what.find("measured time"), std::string::npos); // its cases get more
    }

    Results shares;
    shares.shares = {{false, 9.0, 10.0}};
    EXPECT_TRUE(isMet(shares, "quiet: wall time"));
    shares.shares = {{true, 8.9, 10.0}};
    EXPECT_FALSE(isMet(shares, "with the neighbour: wall time"));
}

} // namespace
