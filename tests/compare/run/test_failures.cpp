// Workers that do not do what they should cost their case, and nothing else.
#include <gtest/gtest.h>

#include "looks.h"
#include "../../texts.h"
#include "scripted.h"

namespace compare {
namespace {

struct Told {
    const char* what;   // of the one failure of the first case
    const char* detail; // likewise
};

// That the second case is whole.
void expectSecondWhole(const Comparison& comparison, const std::string& script) {
    ASSERT_EQ(comparison.cases.size(), 2u) << script;
    EXPECT_EQ(comparison.cases[1].stop, Stop::precise) << script;
    EXPECT_TRUE(comparison.cases[1].failures.empty()) << script;
    EXPECT_EQ(comparison.cases[1].starts.size(), static_cast<size_t>(comparison.passes)) << script;
    EXPECT_TRUE(comparison.isComplete) << script;
}

TEST(Failures, OfAWorkerCostItsCase) {
    const struct {
        std::string script; // of the failing side's first case
        Told told;
        double patience = 20;
    } cases[] = {
        {"at prepare kill 11", {"killed by SIGSEGV in preparation", ""}},
        {"at turn1 kill 11", {"killed by SIGSEGV in a turn", ""}},
        {"at turn2 words first line\nat turn2 words second\nat turn2 kill 6",
         {"killed by SIGABRT in a turn", "first line\nsecond"}},
        {"at release kill 11", {"killed by SIGSEGV after its turns", ""}},
        {"at prepare exit 127", {"ended with status 127 in preparation", ""}},
        {"at prepare leave", {"ended with status 0 in a turn", ""}}, // the order finds nobody
        {"at turn1 exit 0", {"ended with status 0 in a turn", ""}},
        {"at turn1 hang", {"no answer for 1 s in a turn", ""}, 1},
        {"at prepare hang", {"no answer for 1 s in preparation", ""}, 1},
        {"at turn1 say {\"turn\":7}", {"answered garbage in a turn: '{\"turn\":7}'", ""}},
        {"at turn1 say \001\002", {"answered garbage in a turn: '\?\?'", ""}},
        {"at prepare endless",
         {"answered garbage in preparation: "
          "'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"
          "xxx...'",
          ""}},
        {"at turn1 say {\"ready\":true}", {"answered out of turn in a turn", ""}},
        {"at prepare say {\"end\":{\"remarks\":[]}}", {"answered out of turn in preparation", ""}},
        {"at prepare twice", {"answered out of turn in preparation", ""}},
        {"at turn1 twice", {"answered out of turn in a turn", ""}},
        {"at turn1 close", {"closed its answers in a turn", ""}},
        {"start2 at case say {\"end\":{\"remarks\":[]}}",
         {"announced other cases than before", ""}},
        {"start2 at case say {\"case\":{\"test\":0,\"combination\":0,\"function\":\"ntksX\","
         "\"parameters\":{}}}",
         {"announced other cases than before", ""}},
        {"start2 at case exit 3", {"ended with status 3 on the way to a case", ""}},
    };
    for (const auto& expected : cases) {
        for (const Side side : {Side::base, Side::changed}) {
            const std::string other = scriptOfTwo();
            const std::string failing = scriptOfTwo(expected.script);
            Scripted scripted(side == Side::base ? failing : other,
                              side == Side::base ? other : failing);
            scripted.plan.settings.patienceSeconds = expected.patience;
            const Comparison comparison = scripted.run();
            expectSecondWhole(comparison, expected.script);
            const Case& failed = comparison.cases[0];
            ASSERT_EQ(failed.failures.size(), 1u) << expected.script;
            EXPECT_EQ(failed.stop, Stop::failed) << expected.script;
            EXPECT_EQ(failed.failures[0].side, side) << expected.script;
            EXPECT_EQ(failed.failures[0].what, expected.told.what);
            EXPECT_EQ(failed.failures[0].detail, expected.told.detail) << expected.script;
            // Both were started again behind it, in that pass only.
            EXPECT_EQ(scripted.countInLog("base start"), 2 + comparison.passes) << expected.script;
            EXPECT_EQ(scripted.countInLog("new start"), 2 + comparison.passes) << expected.script;
        }
    }
}

// The worker itself is well: it is not started again.
TEST(Failures, OfTheLibraryCostTheCase) {
    const std::pair<const char*, Told> cases[] = {
        {"at turn1 status -5", {"returned status -5", ""}},
        {"at turn1 words why\nat turn1 failed ntksA is missing in libntkdc.so.12",
         {"ntksA is missing in libntkdc.so.12", "why"}},
        {"at turn2 status -1", {"returned status -1", ""}},
        {"at prepare passed too short", {"does not measure this: too short", ""}},
        {"at prepare passed", {"does not measure this", ""}},
    };
    for (const auto& [script, told] : cases) {
        Scripted scripted(scriptOfTwo(), scriptOfTwo(script));
        const Comparison comparison = scripted.run();
        expectSecondWhole(comparison, script);
        const Case& failed = comparison.cases[0];
        ASSERT_EQ(failed.failures.size(), 1u) << script;
        EXPECT_EQ(failed.stop, Stop::failed);
        EXPECT_EQ(failed.failures[0].side, Side::changed);
        EXPECT_EQ(failed.failures[0].what, told.what);
        EXPECT_EQ(failed.failures[0].detail, told.detail);
        EXPECT_TRUE(failed.starts.empty());
        EXPECT_EQ(scripted.countInLog("base release ntksA"), 1) << script;
        EXPECT_EQ(scripted.countInLog("base prepare ntksA"), 1) << script;
        EXPECT_EQ(scripted.countInLog("new start"), 1 + comparison.passes) << script;
    }
}

TEST(Failures, OfBothSidesAreBothTold) {
    const struct {
        const char *base, *changed;
        const char *first, *second; // as they are told
    } cases[] = {
        {"at prepare kill 11", "at prepare exit 2", "killed by SIGSEGV in preparation",
         "ended with status 2 in preparation"},
        {"at turn1 kill 11", "at turn1 status -3", "killed by SIGSEGV in a turn",
         "returned status -3"},
        {"at turn1 status -3", "at turn1 failed missing", "returned status -3", "missing"},
        {"at prepare passed", "at prepare kill 9", "killed by SIGKILL in preparation",
         "does not measure this"},
    };
    for (const auto& expected : cases) {
        Scripted scripted(scriptOfTwo(expected.base), scriptOfTwo(expected.changed));
        const Comparison comparison = scripted.run();
        expectSecondWhole(comparison, expected.base);
        const std::vector<Failure>& failures = comparison.cases[0].failures;
        ASSERT_EQ(failures.size(), 2u) << expected.base;
        EXPECT_EQ(failures[0].what, expected.first) << expected.base;
        EXPECT_EQ(failures[1].what, expected.second) << expected.base;
    }
}

TEST(Failures, InALaterPassKeepWhatWasMeasured) {
    Scripted scripted(scriptOfTwo("start4 at turn1 kill 11"), scriptOfTwo());
    const Comparison comparison = scripted.run();
    expectSecondWhole(comparison, "later");
    EXPECT_EQ(comparison.cases[0].stop, Stop::failed);
    EXPECT_EQ(comparison.cases[0].starts.size(), 2u); // of passes 1 and 2
    EXPECT_EQ(scripted.countInLog("base prepare ntksA"), 3);
}

TEST(Failures, OfEveryCaseEndTheRun) {
    Scripted scripted("case ntksA\nat turn1 kill 11\n", "case ntksA\n");
    const Comparison comparison = scripted.run();
    EXPECT_EQ(comparison.passes, 1);
    EXPECT_EQ(comparison.cases[0].stop, Stop::failed);
}

// With all the patience of the world, but in a hurry as soon as the log has a line so many times.
TEST(Failures, AreNotWhatTheUserDoesNotWaitFor) {
    const struct {
        const char *base, *script, *line;
        int times;
        size_t starts; // of the case, all whole
    } cases[] = {
        {"", "start2 at prepare hang", "new prepare ntksA", 1, 0},
        {"at prepare passed", "start2 at prepare hang", "new prepare ntksA", 1, 0},
        {"", "start2 at turn1 hang", "new turn ntksA 1", 1, 0},
        {"", "start2 at release hang", "new release ntksA", 1, 0},
        {"", "start4 at case hang", "new start", 4, 2},
        {"", "start4 at turn1 hang", "new turn ntksA 1", 4, 2},
        {"", "start4 at release hang", "new release ntksA", 3, 3},
        {"start2 at turn1 hang", "at turn1 kill 11", "base turn ntksA 1", 1, 0}, // it is not asked
    };
    for (const auto& c : cases) {
        Scripted scripted(scriptOfTwo(c.base), scriptOfTwo(c.script));
        scripted.plan.settings.patienceSeconds = 1e6;
        scripted.plan.settings.hurrySeconds = 0.1;
        scripted.plan.wantsEnd = [&] { return scripted.countInLog(c.line) == c.times; };
        const Comparison comparison = scripted.run();
        EXPECT_FALSE(comparison.isComplete) << c.script;
        EXPECT_EQ(comparison.cases[0].stop, Stop::interrupted) << c.script;
        EXPECT_TRUE(comparison.cases[0].failures.empty()) << c.script;
        EXPECT_EQ(comparison.cases[0].starts.size(), c.starts) << c.script;
        for (const Start& start : comparison.cases[0].starts) {
            EXPECT_EQ(start.rounds.size(), 1u) << c.script;
        }
        EXPECT_EQ(scripted.countInLog("new start"), comparison.passes + 1) << c.script;
        EXPECT_EQ(scripted.countInLog("base prepare ntksB"), comparison.passes - 1) << c.script;
    }
    Scripted scripted(scriptOfTwo(), "at hello hang\n");
    scripted.plan.settings.patienceSeconds = 1e6;
    scripted.plan.wantsEnd = [&] { return scripted.countInLog("new start") == 1; };
    EXPECT_THROW(scripted.run(), CannotMeasure);
}

// What cannot even list its cases is not measured at all.
TEST(Failures, BeforeTheFirstCaseAreForTheUser) {
    const struct {
        std::string base, changed;
        std::vector<std::string> told;
    } cases[] = {
        {"at hello words libntkdc.so.12: no such file\nat hello exit 127\n",
         scriptOfTwo(),
         {"base", "the own build", "ended with status 127 at the start",
          "libntkdc.so.12: no such file"}},
        {scriptOfTwo(),
         "at hello kill 4\n" + scriptOfTwo(),
         {"the new side (the build in", "its worker was lost: killed by SIGILL at the start",
          "check that the folder"}},
        {scriptOfTwo(), "at hello hang\n", {"new", "no answer for 2 s at the start"}},
        {scriptOfTwo(),
         scriptOfTwo("at case exit 3"),
         {"new", "ended with status 3 on the way to a case"}},
        {"remark unknown key\n",
         "case ntksA\n",
         {"choose other keys", "base: 0 cases with the keys base ", "new: 1 cases", "unknown key"}},
        {"case ntksA\n", "case ntksB\n", {"choose other keys"}},
    };
    for (const auto& expected : cases) {
        Scripted scripted(expected.base, expected.changed);
        scripted.plan.settings.patienceSeconds = 2;
        try {
            scripted.run();
            ADD_FAILURE() << expected.told[0];
        } catch (const CannotMeasure& error) {
            for (const std::string& part : expected.told) {
                EXPECT_TRUE(has(error.what(), part));
            }
        }
    }
    Scripted scripted(scriptOfTwo(), scriptOfTwo());
    scripted.plan.worker = "/no such worker";
    EXPECT_THROW(scripted.run(), CannotMeasure);
}

} // namespace
} // namespace compare
