#include <gtest/gtest.h>

#include "handmade.h"

namespace compare {

namespace {

using Change = void (*)(Handmade&);

const Change same = [](Handmade& h) { h.addSame("same"); };
const Change open = [](Handmade& h) { h.addOpen("open"); };
const Change begun = [](Handmade& h) { h.addBegun("begun"); };
const Change faster = [](Handmade& h) { h.addFaster("faster"); };
const Change slower = [](Handmade& h) { h.addSlower("slower"); };
const Change justSlower = [](Handmade& h) { h.add("f", 1.1, 0.7, 1.5, Verdict::slower); };
const Change tolerated = [](Handmade& h) { h.add("f", 0.9, 0.7, 1.2, Verdict::slower); };
const Change tolerateMore = [](Handmade& h) { h.comparison.settings.tolerance = 0.02; };
const Change otherOutput = [](Handmade& h) { h.addFaster("f").outcome.changed.status = 1; };
const Change failedOnNew = [](Handmade& h) { h.addFailed("f", Side::changed); };
const Change failedOnBase = [](Handmade& h) { h.addFailed("f", Side::base); };
const Change failedOnBoth = [](Handmade& h) {
    h.addFailed("f", Side::changed).failures.push_back({Side::base, "hung", ""});
};
const Change passedOver = [](Handmade& h) { h.addLeftOut(Stop::passedOver); };
const Change notReached = [](Handmade& h) { h.addLeftOut(Stop::budget); };
const Change unpaired = [](Handmade& h) { h.comparison.unpaired = {{Side::base, "f", {}}}; };

Handmade made(const std::vector<Change>& changes) {
    Handmade handmade;
    for (const Change change : changes) {
        change(handmade);
    }
    return handmade;
}

TEST(ExitStatus, IsThatOfDiff) {
    const struct {
        const char* what;
        std::vector<Change> changes;
        int status;
    } rows[] = {
        {"nothing", {}, 2},
        {"same", {same}, 0},
        {"open", {open}, 0},
        {"without an interval", {begun}, 2},
        {"without an interval, failed on new", {begun, failedOnNew}, 1},
        {"one with an interval", {begun, open}, 0},
        {"faster", {faster}, 0},
        {"slower, tolerated", {tolerated}, 0},
        {"slower", {justSlower}, 1},
        {"slower, tolerated as asked", {tolerateMore, justSlower}, 0},
        {"one of many", {same, slower}, 1},
        {"failed on new", {same, failedOnNew}, 1},
        {"failed on base", {same, failedOnBase}, 0},
        {"failed on both", {same, failedOnBoth}, 0},
        {"all failed", {failedOnNew}, 2},
        {"passed over", {passedOver}, 2},
        // Keys decide what a side announces: that is no property of the build.
        {"unpaired", {same, unpaired}, 0},
    };
    for (const auto& row : rows) {
        const Handmade handmade = made(row.changes);
        EXPECT_EQ(exitStatus(handmade.comparison, handmade.judgement), row.status) << row.what;
    }
}

TEST(Answer, CountsDecidedCasesOnly) {
    const std::pair<std::vector<Change>, std::string> rows[] = {
        {{begun, notReached, passedOver},
         "Nothing was decided: 1 of 2 cases was begun, none has the passes that a verdict needs. "
         "Give it more --budget or --time, or fewer cases."},
        {{open, begun}, "No case was decided; 2 are open."},
        {{same, tolerated, begun, notReached, notReached},
         "Of 2 decided cases none is slower by more than 1%; 1 is open, 2 were not reached."},
        {{slower}, "The only decided case is slower by more than 1%."},
        {{faster}, "The only decided case is faster."},
        {{slower, slower, otherOutput, failedOnNew},
         "Of 3 decided cases 2 are slower by more than 1%, 1 is faster; 1 case failed on the new "
         "side only; outputs differ in 1 case."},
        {{failedOnNew}, "Nothing could be measured: 1 case failed."},
    };
    for (const auto& [changes, answer] : rows) {
        const Handmade handmade = made(changes);
        const std::string table = tableText(handmade.comparison, handmade.judgement);
        EXPECT_TRUE(table.ends_with("\n" + answer + "\n")) << answer << "\n" << table;
        const std::string markdown = markdownText(handmade.comparison, handmade.judgement);
        EXPECT_TRUE(markdown.starts_with("**" + answer + "**")) << answer << "\n" << markdown;
    }
}

TEST(Self, EndsWithOnePlainSentence) {
    Handmade handmade;
    EXPECT_EQ(selfText(handmade.comparison, handmade.judgement), "Nothing could be measured.\n");
    handmade.addSame("f");
    handmade.judgement.medianHalfWidth = 0.003;
    EXPECT_EQ(selfText(handmade.comparison, handmade.judgement),
              "Now, in 1 min 15 s, this machine tells differences above 0.30% apart in the only "
              "case.\n");
    handmade.add("g", 0.1, -0.3, 0.5, Verdict::same);
    handmade.judgement.largestHalfWidth = 0.004;
    EXPECT_EQ(
        selfText(handmade.comparison, handmade.judgement),
        "Now, in 1 min 15 s, this machine tells differences above 0.30% apart in half of the 2 "
        "cases and above 0.40% in all of them.\n");
    handmade.add("h", 1.1, 0.7, 1.5, Verdict::slower);
    EXPECT_TRUE(has(selfText(handmade.comparison, handmade.judgement),
                    "but it found one in 1 case where there is none.\n"));
    for (Effect& effect : handmade.judgement.effects) {
        effect.interval.low = -infinite;
    }
    EXPECT_EQ(selfText(handmade.comparison, handmade.judgement),
              "The time was too short to tell how small a difference this machine shows now.\n");
}

} // namespace

} // namespace compare
