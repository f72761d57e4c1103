#include "judge.h"

#include <gtest/gtest.h>

#include <cmath>

#include "comparisons.h"

namespace compare {
namespace {

TEST(StartEffects, AStartCountsOnceWithTheMedianOfItsRounds) {
    Case measured;
    measured.starts = {startOf(1, {1.02, 1.5, 1.01}), startOf(2, {0.99}), startOf(4, {1, 4, 1, 4})};
    const std::vector<double> effects = startEffects(measured);
    ASSERT_EQ(effects.size(), 3u);
    EXPECT_DOUBLE_EQ(effects[0], std::log(1.02));
    EXPECT_DOUBLE_EQ(effects[1], std::log(0.99));
    EXPECT_DOUBLE_EQ(effects[2], std::log(2));
}

// The same clocks for twice the units are half the clocks per unit.
TEST(StartEffects, TheSidesMayHaveDifferentUnitsPerCall) {
    Case measured;
    measured.starts = {startOf(1, {1.0})};
    measured.outcome.base.unitsPerCall = 500;
    measured.outcome.changed.unitsPerCall = 1000;
    EXPECT_DOUBLE_EQ(startEffects(measured).at(0), std::log(0.5));
    const Effect effect = effectOf(measured, planLooks(1, 0.05));
    EXPECT_DOUBLE_EQ(effect.clocksPerUnit.base, 2);
    EXPECT_DOUBLE_EQ(effect.clocksPerUnit.changed, 1);
    measured.outcome.changed.unitsPerCall = 0; // says nothing: a call is the unit
    EXPECT_DOUBLE_EQ(startEffects(measured).at(0), std::log(500));
}

TEST(StartEffects, RoundsWhoseClockStoodStillSayNothing) {
    Case measured;
    measured.starts = {startOf(1, {1.1}), startOf(2, {})};
    for (const Round& still : {roundOf(0, 1000), roundOf(1000, 0), roundOf(1000, 0)}) {
        measured.starts[0].rounds.push_back(still);
        EXPECT_EQ(startEffects(measured), std::vector{std::log(1.1)});
    }
    EXPECT_TRUE(isMeasured(measured));
    measured.failures.push_back({Side::changed, "killed", ""});
    EXPECT_FALSE(isMeasured(measured));

    Case still;
    still.starts.push_back({1, {roundOf(0, 0)}});
    EXPECT_TRUE(startEffects(still).empty());
    EXPECT_FALSE(isMeasured(still));
    EXPECT_FALSE(isMeasured(Case{}));
}

TEST(EffectOf, GivesTheMediansOverTheTurns) {
    Case measured;
    measured.starts = {startOf(1, {1, 3, 2}), startOf(2, {9})};
    measured.starts[0].rounds[0].turns.base.clocks = 500;
    const Effect effect = effectOf(measured, planLooks(1, 0.05));
    EXPECT_DOUBLE_EQ(effect.clocksPerUnit.base, 1000);
    EXPECT_DOUBLE_EQ(effect.clocksPerUnit.changed, 2500);
}

TEST(EffectOf, ARoundIsDisturbedWhenATurnOfItIs) {
    Case measured;
    measured.starts = {startOf(1, {1, 1, 1}), startOf(2, {1})};
    Round& first = measured.starts[0].rounds[0];
    const auto share = [&] { return effectOf(measured, planLooks(1, 0.05)).disturbedShare; };
    first.turns.base.minorFaults = 9; // these do not count
    EXPECT_EQ(share(), 0);
    first.turns.base.involuntarySwitches = 2;
    EXPECT_EQ(share(), 0.25);
    first.turns.changed.migrations = 1;
    EXPECT_EQ(share(), 0.25);
    measured.starts[1].rounds[0].turns.changed.majorFaults = 1;
    EXPECT_EQ(share(), 0.5);
}

TEST(EffectOf, ItsPValueAccountsForAllLooks) {
    const Case measured = caseOf("f", {1.01, 1.02, 1.03, 1.04, 1.05, 1.06, 1.07});
    const Effect two = effectOf(measured, {{7, 9}, 0.975});
    EXPECT_DOUBLE_EQ(two.pValue, 2 * 2 / 128.0);
    EXPECT_DOUBLE_EQ(effectOf(measured, {{7, 8, 9, 10}, 0.975}).pValue, 4 * 2 / 128.0);
    EXPECT_EQ(effectOf(caseOf("f", {1.01, 0.98, 1.02}), {{7, 9}, 0.975}).pValue, 1);
    EXPECT_DOUBLE_EQ(two.interval.low, std::log(1.01));
    EXPECT_DOUBLE_EQ(two.interval.high, std::log(1.07));
    EXPECT_FALSE(std::isfinite(effectOf(measured, {{7, 9}, 0.99}).interval.low));
}

} // namespace
} // namespace compare
