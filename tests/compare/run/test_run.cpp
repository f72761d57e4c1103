// Whole runs, with scripted workers: what is measured, in which order, and when it ends.
#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "looks.h"
#include "scripted.h"

namespace compare {
namespace {

using Strings = std::vector<std::string>;

// The lines about one case, with the turns of both sides in the order in which they were taken.
Strings about(const Strings& log, const std::string& function) {
    Strings lines;
    std::copy_if(log.begin(), log.end(), std::back_inserter(lines), [&](const std::string& line) {
        return line.find(" " + function) != std::string::npos;
    });
    return lines;
}

TEST(Run, TellsWhatIsCompared) {
    Scripted scripted(scriptOfTwo() + "case ntksC\nremark -dX: no test asked for it\n",
                      "case ntksA Length=17\n" + std::string("case ntksC\ncase ntksD Length=4\n"));
    scripted.plan.settings.seed = 7;
    const Comparison comparison = scripted.run();
    EXPECT_EQ(namesOf(comparison.cases), (Strings{"ntksA Length=16", "ntksC"}));
    EXPECT_EQ(comparison.cases[0].parameters.changed.at(0).value, Value(17LL));
    EXPECT_EQ(comparison.unpaired.size(), 2u); // see Listing
    EXPECT_EQ(comparison.sides.base.directory, "own");
    EXPECT_EQ(comparison.sides.changed.directory, scripted.plan.directories.changed);
    EXPECT_EQ(comparison.sides.changed.keys, scripted.plan.keys.changed);
    EXPECT_EQ(comparison.sides.base.files, Strings{"/lib of base"});
    EXPECT_EQ(comparison.sides.changed.version, "1.0 new");
    EXPECT_EQ(comparison.remarks.base, Strings{"-dX: no test asked for it"});
    EXPECT_TRUE(comparison.remarks.changed.empty());
    EXPECT_EQ(comparison.settings.seed, 7u);
    EXPECT_GE(comparison.cpu, 0);
    EXPECT_FALSE(comparison.started.empty());
    EXPECT_TRUE(comparison.isComplete);
    EXPECT_EQ(scripted.countInLog("base prepare ntksB"), 0);
    EXPECT_EQ(scripted.countInLog("new prepare ntksD"), 0);
}

TEST(Run, GivesEachPassANewPairAndARound) {
    Scripted scripted(scriptOfTwo("turns 5e9 1e9"), scriptOfTwo("turns 10e9 2e9 3e9"));
    const Comparison comparison = scripted.run();
    const Looks looks = planLooks(2, comparison.settings.alpha);
    EXPECT_EQ(comparison.looks, looks.passes);
    // Equal in all passes: the first look ends it.
    EXPECT_EQ(comparison.passes, looks.passes.front());
    EXPECT_EQ(scripted.countInLog("base start"), 1 + comparison.passes); // one for the list
    EXPECT_EQ(scripted.countInLog("new start"), 1 + comparison.passes);
    EXPECT_EQ(scripted.countInLog("base quit"), 1 + comparison.passes);

    const Strings log = about(scripted.log(), "ntksA");
    for (const Case& measured : comparison.cases) {
        EXPECT_EQ(measured.stop, Stop::precise);
        EXPECT_GT(measured.seconds, 0);
        ASSERT_EQ(measured.starts.size(), static_cast<size_t>(comparison.passes));
        for (size_t i = 0; i < measured.starts.size(); ++i) {
            EXPECT_EQ(measured.starts[i].pass, static_cast<int>(i) + 1);
            EXPECT_EQ(measured.starts[i].rounds.size(), 1u);
        }
    }
    std::set<bool> orders;
    auto visit = log.begin();
    for (const Start& start : comparison.cases[0].starts) {
        Strings expected = {"base prepare ntksA", "new prepare ntksA"};
        if (start.pass % 2 == 0) { // by turns
            std::swap(expected[0], expected[1]);
        }
        if (start.pass == 1) { // a turn that does not count
            expected.insert(expected.end(), {"base turn ntksA 1", "new turn ntksA 1"});
        }
        const Round& round = start.rounds.at(0);
        const Strings sides = round.baseFirst ? Strings{"base", "new"} : Strings{"new", "base"};
        for (const std::string& side : sides) {
            expected.push_back(side + " turn ntksA 1");
        }
        expected.insert(expected.end(), {"base release ntksA", "new release ntksA"});
        ASSERT_GE(log.end() - visit, static_cast<long>(expected.size()));
        EXPECT_EQ(Strings(visit, visit + static_cast<long>(expected.size())), expected);
        visit += static_cast<long>(expected.size());

        EXPECT_EQ(round.turns.base.clocks, start.pass == 1 ? 1e9 : 5e9);
        EXPECT_EQ(round.turns.changed.clocks, start.pass == 1 ? 2e9 : 10e9);
        orders.insert(round.baseFirst);
    }
    EXPECT_TRUE(visit == log.end());
    EXPECT_EQ(orders.size(), 2u); // drawn
}

std::vector<bool> ordersOf(unsigned long long seed) {
    Scripted scripted(scriptOfTwo(), scriptOfTwo());
    scripted.plan.settings.seed = seed;
    std::vector<bool> orders;
    for (const Case& measured : scripted.run().cases) {
        for (const Start& start : measured.starts) {
            orders.push_back(start.rounds.at(0).baseFirst);
        }
    }
    return orders;
}

TEST(Run, DrawsByItsSeed) {
    const std::vector<bool> one = ordersOf(1);
    EXPECT_EQ(ordersOf(1), one);
    EXPECT_NE(ordersOf(2), one);
    EXPECT_NE(ordersOf((1ull << 32) + 1), one);
    const auto half = static_cast<long>(one.size() / 2); // each case for itself
    EXPECT_FALSE(std::equal(one.begin(), one.begin() + half, one.begin() + half));
}

// The short call seems longer until there are enough of it between two readings.
TEST(Run, SizesTurnsByTheFirstOfBase) {
    Scripted scripted("case ntksA\nturns 100 10 12\n", "case ntksA\nturns 3000\n");
    const Comparison comparison = scripted.run();
    const Strings log = about(scripted.log(), "ntksA");
    EXPECT_EQ(Strings(log.begin() + 2, log.begin() + 6),
              (Strings{"base turn ntksA 1", "new turn ntksA 1", "base turn ntksA 300",
                       "base turn ntksA 3000"}));
    std::set<long long> calls;
    for (const Start& start : comparison.cases.at(0).starts) {
        for (const Side side : {Side::base, Side::changed}) {
            calls.insert(start.rounds.at(0).turns[side].calls);
        }
    }
    EXPECT_EQ(calls.size(), 1u); // the same for both sides in all passes
    EXPECT_EQ(*calls.begin() % 2500, 0);
    // Sized once: later passes have the round only.
    EXPECT_EQ(log.size(), 6u * static_cast<size_t>(comparison.passes) + 4);
    EXPECT_EQ(scripted.countInLog("base turn ntksA 2500"), comparison.passes);
    EXPECT_EQ(scripted.countInLog("new turn ntksA 2500"), comparison.passes);
}

TEST(Run, TakesRoundsAsLongAsThereIsTime) {
    Scripted scripted(scriptOfTwo(), scriptOfTwo());
    scripted.plan.settings.secondsPerCase = 0.1;
    for (const Case& measured : scripted.run().cases) {
        size_t most = 0;
        for (const Start& start : measured.starts) {
            most = std::max(most, start.rounds.size());
        }
        EXPECT_GT(most, 1u);
    }
}

// Clocks of one side that differ from process to process by much more than is tolerated.
std::string scattered() {
    std::string lines;
    for (int start = 1; start <= 60; ++start) {
        lines += "start" + std::to_string(start) + " turns " + (start % 2 ? "1e9\n" : "2e9\n");
    }
    return lines;
}

TEST(Run, MeasuresOnWhatIsNotPrecise) {
    Scripted scripted(scriptOfTwo(), scriptOfTwo(scattered()));
    scripted.plan.settings.secondsPerCase = 0.5;
    const Comparison comparison = scripted.run();
    const Looks looks = planLooks(2, comparison.settings.alpha);
    EXPECT_EQ(comparison.cases[0].stop, Stop::time);
    EXPECT_EQ(comparison.cases[0].starts.size(), static_cast<size_t>(looks.last()));
    EXPECT_EQ(comparison.cases[1].stop, Stop::precise); // left out of the later passes
    EXPECT_EQ(comparison.cases[1].starts.size(), static_cast<size_t>(looks.passes.front()));
    EXPECT_EQ(comparison.passes, looks.last());
    EXPECT_TRUE(comparison.isComplete);
}

TEST(Run, EndsACaseAtTheLookAfterItsTime) {
    Scripted scripted(scriptOfTwo(), scriptOfTwo(scattered())); // one turn is longer than its time
    const Comparison comparison = scripted.run();
    EXPECT_EQ(comparison.cases[0].stop, Stop::time);
    EXPECT_EQ(comparison.passes, planLooks(2, comparison.settings.alpha).passes.front());
    EXPECT_TRUE(comparison.isComplete);
}

TEST(Run, PlansLooksForTheCasesThatAreLeft) {
    std::string script = "case ntksZ\n";
    for (int i = 0; i < 40; ++i) {
        script += "case ntksX Length=" + std::to_string(i) + "\nat prepare passed too short\n";
    }
    Scripted scripted(script, script);
    EXPECT_EQ(scripted.run().looks, planLooks(1, 0.05).passes);
}

TEST(Run, KeepsWhatTheSidesSay) {
    Scripted scripted(scriptOfTwo("outcome 0 Ratio=3\nstart3 outcome 7 Ratio=3"),
                      scriptOfTwo("outcome 4 Ratio=2\nstart2 outcome 1 Ratio=2"));
    const Comparison comparison = scripted.run();
    const Both<Outcome>& outcome = comparison.cases[0].outcome;
    EXPECT_TRUE(comparison.cases[0].failures.empty());
    EXPECT_EQ(outcome.base.status, 7); // the worst of all passes
    EXPECT_EQ(outcome.changed.status, 4);
    EXPECT_EQ(outcome.base.values.at(0).value, Value(3LL));
    EXPECT_EQ(outcome.changed.values.at(0).value, Value(2LL));
    EXPECT_EQ(outcome.base.unit, "b");
}

// Its test would tell what another case left behind.
TEST(Run, ASideWithoutATurnSaysNothingNew) {
    const std::string script = scriptOfTwo("outcome 0 Ratio=3\nstart3 outcome 0 Ratio=9");
    int kept = 0;
    for (int asked = 4; asked < 16; ++asked) {
        Scripted scripted(script, script);
        scripted.turnsUntilInterrupt = asked; // in the third start after one turn of the first case
        const Comparison comparison = scripted.run();
        const Both<int> turns = {scripted.countInLog("base turn ntksA 1"),
                                 scripted.countInLog("new turn ntksA 1")};
        if (turns.base != turns.changed && comparison.passes == 2) {
            const Side idle = turns.base < turns.changed ? Side::base : Side::changed;
            EXPECT_EQ(comparison.cases[0].outcome[idle].values.at(0).value, Value(3LL));
            ++kept;
        }
    }
    EXPECT_GT(kept, 0);
}

TEST(Run, PassesOverWhatNeitherSideMeasures) {
    Scripted scripted(scriptOfTwo("at prepare passed"), scriptOfTwo("at prepare passed too short"));
    const Comparison comparison = scripted.run();
    EXPECT_EQ(comparison.cases[0].stop, Stop::passedOver);
    EXPECT_EQ(comparison.cases[0].passedOver, "too short");
    EXPECT_TRUE(comparison.cases[0].failures.empty());
    EXPECT_TRUE(comparison.cases[0].starts.empty());
    EXPECT_EQ(scripted.countInLog("base prepare ntksA"), 1); // and not in later passes
    EXPECT_EQ(scripted.countInLog("base start"), 1 + comparison.passes);
    EXPECT_EQ(comparison.cases[1].stop, Stop::precise);

    // Without a reason of the worker's the test's own words count.
    const std::string words = "at case words of another case\n"
                              "at prepare words  Function : title\n"
                              "at prepare words -- Can't open file x\nat prepare words last\n"
                              "at prepare passed";
    Scripted quiet(scriptOfTwo(words), scriptOfTwo(words));
    EXPECT_EQ(quiet.run().cases[0].passedOver, "Can't open file x");
    const std::string title = "at prepare words ---- title\nat prepare passed";
    Scripted mute(scriptOfTwo(title), scriptOfTwo(title));
    EXPECT_EQ(mute.run().cases[0].passedOver, "");
}

TEST(Run, EndsAfterTheTurnWhenInterrupted) {
    const struct {
        int asked; // how often before it is interrupted
        size_t turns, rounds;
    } cases[] = {
        // It is asked before the first pass, before a case and after each turn of a round.
        {0, 0, 0},
        {1, 0, 0},
        {2, 3, 0},
        {3, 4, 1},
    };
    for (const auto& expected : cases) {
        Scripted scripted(scriptOfTwo(), scriptOfTwo());
        scripted.turnsUntilInterrupt = expected.asked;
        const Comparison comparison = scripted.run();
        EXPECT_FALSE(comparison.isComplete) << expected.asked;
        for (const Case& measured : comparison.cases) {
            EXPECT_EQ(measured.stop, Stop::interrupted);
        }
        const Case& first = comparison.cases[0];
        EXPECT_EQ(first.starts.empty() ? 0 : first.starts[0].rounds.size(), expected.rounds);
        EXPECT_EQ(scripted.countInLog("base turn ntksA 1") +
                      scripted.countInLog("new turn ntksA 1"),
                  static_cast<int>(expected.turns));
        EXPECT_EQ(scripted.countInLog("base release ntksA"), expected.turns ? 1 : 0);
        EXPECT_TRUE(about(scripted.log(), "ntksB").empty());
    }
}

TEST(Run, EndsWithItsBudget) {
    Scripted early(scriptOfTwo(), scriptOfTwo());
    early.plan.settings.budgetSeconds = 1e-6; // over when the cases are listed
    const Comparison nothing = early.run();
    EXPECT_FALSE(nothing.isComplete);
    EXPECT_EQ(nothing.cases[0].stop, Stop::budget);
    EXPECT_EQ(nothing.passes, 0);

    // Enough for all: the part of a case is less than its time.
    Scripted late(scriptOfTwo(), scriptOfTwo());
    late.plan.settings.budgetSeconds = 1000;
    const Comparison whole = late.run();
    EXPECT_TRUE(whole.isComplete);
    EXPECT_EQ(whole.cases[0].stop, Stop::precise);
}

TEST(Run, TellsItsProgress) {
    Scripted scripted(scriptOfTwo(), scriptOfTwo());
    const Comparison comparison = scripted.run();
    ASSERT_EQ(scripted.progress.size(), 2u * static_cast<size_t>(comparison.passes));
    EXPECT_EQ(scripted.progress[0].caseName, "ntksA Length=16");
    EXPECT_EQ(scripted.progress[1].caseName, "ntksB Length=32");
    for (const Progress& told : scripted.progress) {
        EXPECT_GE(told.share, 0);
        EXPECT_LE(told.share, 1);
    }
}

} // namespace
} // namespace compare
