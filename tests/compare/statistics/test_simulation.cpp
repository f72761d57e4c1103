#include "judge.h"

#include <gtest/gtest.h>

#include <cmath>

#include "noise.h"

// The whole rule, from rounds to verdicts with its looks and its stopping, on machines whose truth
// is known. The seeds are fixed, and what is expected lies well away from what is asked for.
namespace compare {
namespace {

constexpr int roundsOfAStart = 8; // 1 s in 21 starts, turns of 3 ms

const Noise quiet{.name = "quiet"};
const Noise bursts{.name = "bursts", .burstShare = 0.1};
const Noise drift{.name = "drift", .driftOfTurn = 0.002};
const Noise modes{.name = "two modes", .slowProcess = 0.03};
const Noise memory{.name = "autocorrelation", .memory = 0.8};
const Noise tails{.name = "heavy tails", .turnSd = 0.005, .freedom = 2};
const Noise machines[] = {quiet, bursts, drift, modes, memory, tails};

// A run over cases that all have the same true ratio.
Comparison runOf(const Noise& noise, int cases, double effect, unsigned long long seed) {
    const Settings settings;
    const Looks looks = planLooks(cases, settings.alpha);
    Comparison comparison;
    comparison.looks = looks.passes;
    comparison.cases.resize(cases);
    Machine machine(noise, seed);
    for (Case& measured : comparison.cases) {
        int pass = 0;
        for (const int look : looks.passes) {
            while (pass < look) {
                measured.starts.push_back(machine.start(++pass, roundsOfAStart, effect));
            }
            if (isDone(effectOf(measured, looks), settings, cases)) {
                break;
            }
        }
    }
    return comparison;
}

struct Tally {
    int runs = 0;
    int runsWithACall = 0; // of a case, slower or faster
    int cases = 0;
    int slower = 0;
    int faster = 0;
    int holdTruth = 0; // intervals
    int summariesHoldTruth = 0;
    double starts = 0;

    double share(int count) const { return static_cast<double>(count) / cases; }
};

void count(Tally& tally, const Comparison& comparison, double effect) {
    const Judgement judgement = judge(comparison);
    int calls = 0;
    for (size_t i = 0; i < comparison.cases.size(); ++i) {
        const Effect& found = judgement.effects[i];
        tally.slower += found.verdict == Verdict::slower;
        tally.faster += found.verdict == Verdict::faster;
        calls += found.verdict == Verdict::slower || found.verdict == Verdict::faster;
        tally.holdTruth += found.interval.contains(std::log(effect));
        tally.starts += static_cast<double>(comparison.cases[i].starts.size());
    }
    tally.cases += static_cast<int>(comparison.cases.size());
    tally.runsWithACall += calls > 0;
    tally.summariesHoldTruth += judgement.all.interval.contains(std::log(effect));
    ++tally.runs;
}

Tally tallyOf(const Noise& noise, int runs, int cases, double effect) {
    Tally tally;
    for (int run = 1; run <= runs; ++run) {
        count(tally, runOf(noise, cases, effect, run), effect);
    }
    return tally;
}

class OnMachine : public testing::TestWithParam<Noise> {};

TEST_P(OnMachine, EqualBuildsAreSeldomCalledDifferent) {
    const struct { int runs, cases; } rows[] = {{600, 1}, {25, 32}, {2, 500}};
    for (const auto& row : rows) {
        const Tally tally = tallyOf(GetParam(), row.runs, row.cases, 1);
        EXPECT_GE(tally.share(tally.holdTruth), 0.95) << row.cases;
        if (row.cases == 1) {
            EXPECT_LE(tally.runsWithACall, 0.05 * tally.runs);
        } else {
            EXPECT_LE(tally.share(tally.slower + tally.faster), 0.01) << row.cases;
        }
    }
}

TEST_P(OnMachine, TheIntervalHoldsTheTruthWheneverTheCaseStopped) {
    for (const double effect : {0.95, 1.005, 1.02}) {
        const Tally tally = tallyOf(GetParam(), 25, 32, effect);
        EXPECT_GE(tally.share(tally.holdTruth), 0.95) << effect;
    }
}

INSTANTIATE_TEST_SUITE_P(Simulation, OnMachine, testing::ValuesIn(machines),
                         [](const auto& tested) {
                             std::string name = tested.param.name;
                             std::erase(name, ' ');
                             return name;
                         });

// The chance of a false call is that of all cases together; 5% of 120 runs are 6.
TEST(Simulation, OneFalseCallAmongAllCasesIsSeldomToo) {
    const Tally tally = tallyOf(quiet, 120, 32, 1);
    EXPECT_LE(tally.runsWithACall, 6);
    EXPECT_GE(tally.summariesHoldTruth, 0.95 * tally.runs);
}

// Two modes stay out: they are wider than what is looked for.
TEST(Simulation, FindsOneAndTwoPercentInTime) {
    const Noise noisy{.name = "noisy", .turnSd = 0.014};
    const struct {
        Noise noise;
        int runs, cases;
        double effect, share;
    } rows[] = {
        {quiet, 200, 1, 1.01, 0.95},  {quiet, 15, 32, 1.01, 0.95},  {quiet, 1, 500, 1.01, 0.95},
        {quiet, 15, 32, 0.99, 0.95},  {bursts, 15, 32, 1.01, 0.95}, {drift, 15, 32, 1.01, 0.95},
        {memory, 15, 32, 1.01, 0.95}, {tails, 15, 32, 1.01, 0.95},  {noisy, 15, 32, 1.02, 0.99},
        {noisy, 1, 500, 0.98, 0.99},
    };
    for (const auto& row : rows) {
        const Tally tally = tallyOf(row.noise, row.runs, row.cases, row.effect);
        const int right = row.effect > 1 ? tally.slower : tally.faster;
        EXPECT_GE(tally.share(right), row.share) << row.noise.name << ' ' << row.effect;
    }
}

// On a quiet machine most cases are done at the first look.
TEST(Simulation, QuietCasesAreDoneEarly) {
    const Looks looks = planLooks(32, 0.05);
    for (const double effect : {1.0, 1.03}) {
        const Tally tally = tallyOf(quiet, 5, 32, effect);
        EXPECT_LE(tally.starts / tally.cases, looks.passes.front() + 1) << effect;
    }
}

} // namespace
} // namespace compare
