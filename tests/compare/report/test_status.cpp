#include <gtest/gtest.h>

#include "handmade.h"

namespace compare {

namespace {

// Begun, but in too few passes.
void addUnbounded(Handmade& handmade) {
    handmade.add("f", 3, 0, 0, Verdict::open);
    handmade.lastEffect().interval.low = -infinite;
    handmade.lastEffect().interval.high = infinite;
}

TEST(ExitStatus, IsThatOfDiff) {
    using Change = void (*)(Handmade&);
    struct Row {
        const char* what;
        Change change;
        int status;
    };
    const Row rows[] = {
        {"nothing", [](Handmade&) {}, 2},
        {"same", [](Handmade& h) { h.add("f", 0.1, -0.2, 0.4, Verdict::same); }, 0},
        {"open", [](Handmade& h) { h.add("f", 3, -2, 8, Verdict::open); }, 0},
        {"without an interval", [](Handmade& h) { addUnbounded(h); }, 2},
        {"without an interval, failed on new",
         [](Handmade& h) {
             addUnbounded(h);
             h.addFailed("g", Side::changed);
         },
         1},
        {"one with an interval",
         [](Handmade& h) {
             addUnbounded(h);
             h.add("g", 0.1, -2, 4, Verdict::open);
         },
         0},
        {"faster", [](Handmade& h) { h.add("f", -3, -4, -2, Verdict::faster); }, 0},
        {"slower, tolerated", [](Handmade& h) { h.add("f", 0.9, 0.7, 1.2, Verdict::slower); }, 0},
        {"slower", [](Handmade& h) { h.add("f", 1.1, 0.7, 1.5, Verdict::slower); }, 1},
        {"slower, tolerated as asked",
         [](Handmade& h) {
             h.comparison.settings.tolerance = 0.02;
             h.add("f", 1.1, 0.7, 1.5, Verdict::slower);
         },
         0},
        {"one of many",
         [](Handmade& h) {
             h.add("f", 0, -0.2, 0.2, Verdict::same);
             h.add("g", 2, 1, 3, Verdict::slower);
         },
         1},
        {"failed on new",
         [](Handmade& h) {
             h.add("f", 0, -0.2, 0.2, Verdict::same);
             h.addFailed("g", Side::changed);
         },
         1},
        {"failed on base",
         [](Handmade& h) {
             h.add("f", 0, -0.2, 0.2, Verdict::same);
             h.addFailed("g", Side::base);
         },
         0},
        {"failed on both",
         [](Handmade& h) {
             h.add("f", 0, -0.2, 0.2, Verdict::same);
             h.addFailed("g", Side::changed).failures.push_back({Side::base, "hung", ""});
         },
         0},
        {"all failed", [](Handmade& h) { h.addFailed("g", Side::changed); }, 2},
        {"passed over", [](Handmade& h) { h.addLeftOut(Stop::passedOver); }, 2},
        // Keys decide what a side announces: that is no property of the build.
        {"unpaired",
         [](Handmade& h) {
             h.add("f", 0, -0.2, 0.2, Verdict::same);
             h.comparison.unpaired = {{Side::base, "g", {}}};
         },
         0},
    };
    for (const Row& row : rows) {
        Handmade handmade;
        row.change(handmade);
        EXPECT_EQ(exitStatus(handmade.comparison, handmade.judgement), row.status) << row.what;
    }
}

TEST(Answer, CountsDecidedCasesOnly) {
    struct Row {
        void (*change)(Handmade&);
        const char* answer;
    };
    const Row rows[] = {
        {[](Handmade& h) {
             addUnbounded(h);
             h.addLeftOut(Stop::budget);
             h.addLeftOut(Stop::passedOver);
         },
         "Nothing was decided: 1 of 2 cases was begun, none has the passes that a verdict needs. "
         "Give it more --budget or --time, or fewer cases."},
        {[](Handmade& h) {
             h.add("f", 0.1, -2, 4, Verdict::open);
             addUnbounded(h);
         },
         "No case was decided; 2 are open."},
        {[](Handmade& h) {
             h.add("f", 0.1, -0.2, 0.4, Verdict::same);
             h.add("g", 0.5, 0.3, 0.7, Verdict::slower);
             addUnbounded(h);
             h.addLeftOut(Stop::budget);
             h.addLeftOut(Stop::budget);
         },
         "Of 2 decided cases none is slower by more than 1%; 1 is open, 2 were not reached."},
        {[](Handmade& h) { h.add("f", 5, 4, 6, Verdict::slower); },
         "The only decided case is slower by more than 1%."},
        {[](Handmade& h) { h.add("f", -5, -6, -4, Verdict::faster); },
         "The only decided case is faster."},
        {[](Handmade& h) {
             h.add("f", 5, 4, 6, Verdict::slower);
             h.add("g", 6, 5, 7, Verdict::slower);
             h.add("h", -5, -6, -4, Verdict::faster).outcome.changed.status = 1;
             h.addFailed("i", Side::changed);
         },
         "Of 3 decided cases 2 are slower by more than 1%, 1 is faster; 1 case failed on the new "
         "side only; outputs differ in 1 case."},
        {[](Handmade& h) { h.addFailed("i", Side::changed); },
         "Nothing could be measured: 1 case failed."},
    };
    for (const Row& row : rows) {
        Handmade handmade;
        row.change(handmade);
        const std::string text = tableText(handmade.comparison, handmade.judgement);
        EXPECT_TRUE(text.ends_with(std::string("\n") + row.answer + "\n")) << text;
        EXPECT_EQ(markdownText(handmade.comparison, handmade.judgement)
                      .rfind("**" + std::string(row.answer) + "**", 0),
                  0u);
    }
}

TEST(Self, EndsWithOnePlainSentence) {
    Handmade handmade;
    EXPECT_EQ(selfText(handmade.comparison, handmade.judgement), "Nothing could be measured.\n");
    handmade.add("f", 0.1, -0.2, 0.4, Verdict::same);
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
    EXPECT_NE(selfText(handmade.comparison, handmade.judgement)
                  .find("but it found one in 1 case where there is none.\n"),
              std::string::npos);
    for (Effect& effect : handmade.judgement.effects) {
        effect.interval.low = -infinite;
    }
    EXPECT_EQ(selfText(handmade.comparison, handmade.judgement),
              "The time was too short to tell how small a difference this machine shows now.\n");
}

} // namespace

} // namespace compare
