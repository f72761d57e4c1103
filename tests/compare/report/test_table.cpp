#include <gtest/gtest.h>

#include <algorithm>

#include "format.h"
#include "handmade.h"

namespace compare {

namespace {

std::vector<std::string> linesOf(const Handmade& handmade, int width = 0, bool showsAll = false) {
    return ::linesOf(tableText(handmade.comparison, handmade.judgement, {width, showsAll}));
}

// Where in the text the first line that begins with this is; -1: nowhere.
int find(const std::vector<std::string>& lines, const std::string& beginning) {
    const auto found = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.starts_with(beginning);
    });
    return found == lines.end() ? -1 : static_cast<int>(found - lines.begin());
}

Handmade several() {
    Handmade handmade;
    handmade.addSame("ntksSame_8u");
    handmade.add("ntksFaster_8u", -12.5, -12.75, -12.25, Verdict::faster);
    handmade.addLeftOut(Stop::passedOver, "file too short");
    handmade.addFailed("ntksBoth_8u", Side::base);
    handmade.add("ntksSlower_8u", 2.5, 2.25, 2.75, Verdict::slower);
    handmade.addFailed("ntksLost_8u", Side::changed);
    handmade.judgement.functions["ntksA_8u"] = {2, {0.001, -0.001, 0.003}};
    handmade.judgement.functions["ntksOnly_8u"] = {1, {0, 0, 0}};
    handmade.judgement.functions["ntksB_8u"] = {2, {0.025, 0.01, 0.03}};
    handmade.judgement.all = {3, {-0.03, -0.04, -0.02}};
    handmade.judgement.medianHalfWidth = 0.0025;
    handmade.judgement.largestHalfWidth = 0.003;
    return handmade;
}

// Failures first, then the slowest; no mean of one case; a remark only where there is something to
// say.
TEST(Table, HasAHeadTheCasesTheMeansAndWhatHoldsForAll) {
    Handmade handmade = several();
    handmade.comparison.isComplete = false;
    handmade.comparison.cases[0].outcome.base.values = {{"Size", 100LL}};
    handmade.comparison.cases[0].outcome.changed.values = {{"Size", 110LL}};
    handmade.comparison.unpaired = {{Side::base, "ntksAlone_8u", {{"A", 1LL}}}};
    const std::string common = "-dX: no test asked for it";
    handmade.comparison.remarks = {{common}, {common, "-iY: there is no such file"}};
    EXPECT_EQ(tableText(handmade.comparison, handmade.judgement), R"(Base: /ref, 12.0.0
New:  own, 12.0.1
Keys: -fLZ4
On:   A processor, processor 1, 1 min 15 s in 12 passes

Function       Parameters                        Base    New  Unit  Difference                   Verdict
ntksLost_8u                                                                                      FAILED
    failed on the new side: killed by SIGSEGV in a turn
      | first line
      | last line
ntksBoth_8u                                                                                      FAILED
    failed on the base side: killed by SIGSEGV in a turn
      | first line
      | last line
ntksSlower_8u  CodeLength=16384 CodeFile=book1  4.000  4.100  e      +2.50%  [ +2.25%,  +2.75%]  slower
ntksSame_8u    CodeLength=16384 CodeFile=book1  4.000  4.004  e      +0.10%  [ -0.20%,  +0.40%]  same (!)
    outputs differ: Size 100 -> 110
ntksFaster_8u  CodeLength=16384 CodeFile=book1  4.000  3.500  e     -12.50%  [-12.75%, -12.25%]  faster

ntksB_8u       mean of 2 cases                                       +2.53%  [ +1.01%,  +3.05%]
ntksA_8u       mean of 2 cases                                       +0.10%  [ -0.10%,  +0.30%]
all            mean of 3 cases                                       -2.96%  [ -3.92%,  -1.98%]
Base and New are clocks per unit; e is an element: a byte (decoders of LZ4 and ZFP: a compressed byte; encoder of ZFP: a value).

INCOMPLETE: the budget was used up
without effect: -dX: no test asked for it
without effect on the new side: -iY: there is no such file
only on the base side: ntksAlone_8u A=1
1 case passed over: file too short
Verdicts:    1 slower (1 by more than 1%), 1 faster, 1 same, 2 failed, 1 passed over
Confidence:  95% that all of slower and faster are true (Holm over the cases), and for each interval
Noise floor: intervals of +-0.25% in the median case, +-0.30% in the widest
Of 3 decided cases 1 is slower by more than 1%, 1 is faster; 1 case failed on the new side only; outputs differ in 1 case.
)");
    handmade.comparison.cases[0].stop = Stop::interrupted;
    EXPECT_NE(find(linesOf(handmade), "INCOMPLETE: interrupted"), -1);
    handmade.comparison.isComplete = true;
    EXPECT_EQ(find(linesOf(handmade), "INCOMPLETE"), -1);
    handmade.comparison.sides.changed.keys.emplace_back("-TAVX2");
    EXPECT_EQ(linesOf(handmade)[0], "Base: /ref, 12.0.0, keys -fLZ4");
    EXPECT_EQ(linesOf(handmade)[1], "New:  own, 12.0.1, keys -fLZ4 -TAVX2");
}

TEST(Table, WhatIsToBeSaidOfACaseStandsBesideItsVerdict) {
    struct Row {
        void (*change)(Handmade&);
        const char* end;
    };
    const Row rows[] = {
        {[](Handmade& h) { h.addSame("f"); }, "]  same"},
        {[](Handmade& h) { h.add("f", 0.1, -2, 1.9, Verdict::open).stop = Stop::time; },
         "]  open (1 s used up)"},
        {[](Handmade& h) { h.add("f", 10, 8, 12, Verdict::slower).stop = Stop::budget; },
         "]  slower (budget used up)"},
        {[](Handmade& h) { h.addBegun("f").stop = Stop::interrupted; },
         "+1.00%  no interval yet  open (interrupted)"},
        {[](Handmade& h) { h.add("f", 0.5, 0.3, 0.7, Verdict::slower); }, "]  slower (tolerated)"},
        {[](Handmade& h) {
             h.addSame("f");
             h.lastEffect().disturbedShare = 0.25;
         },
         "]  same"},
        {[](Handmade& h) {
             h.add("f", 0.1, -2, 2.4, Verdict::open);
             h.lastEffect().disturbedShare = 0.25;
         },
         "]  open (25% disturbed)"},
        {[](Handmade& h) {
             h.add("f", 0.1, -2, 2.4, Verdict::open);
             h.lastEffect().disturbedShare = 0.09;
         },
         "]  open"},
        {[](Handmade& h) {
             h.addSame("f").outcome.changed.status = 1;
             h.lastEffect().disturbedShare = 0.5;
         },
         "]  same (!)"},
        {[](Handmade& h) { h.addFailed("f", Side::changed); }, " FAILED"},
    };
    for (const Row& row : rows) {
        Handmade handmade;
        row.change(handmade);
        const auto lines = linesOf(handmade);
        const std::string line = lines[static_cast<std::size_t>(find(lines, "f "))];
        EXPECT_TRUE(line.ends_with(row.end)) << line;
    }
}

TEST(Table, IsFittedIntoATerminal) {
    Handmade handmade = several();
    handmade.add("ntksEncodeLZ4DictSafe_8u", 0.5, -10.5, 11.5, Verdict::open).stop = Stop::time;
    handmade.lastEffect().disturbedShare = 0.5;
    struct Row {
        int width;
        const char* line;
    };
    const Row rows[] = {
        {0, "ntksSlower_8u             CodeLength=16384 CodeFile=book1  4.000  4.100  e      "
            "+2.50%  [ +2.25%,  +2.75%]  slower"},
        {120, "ntksSlower_8u             CodeLength=16384 CodeFile=book1  4.000  4.100   "
              "+2.50%  [ +2.25%,  +2.75%]  slower"},
        {100, "ntksSlower_8u             16384 book1  4.000  4.100   +2.50%  "
              "[ +2.25%,  +2.75%]  slower"},
        {85, "ntksSlower_8u             16384 book1   +2.50%  [ +2.25%,  +2.75%]  slower"},
        {80, "ntksSlower_8u             16384 book1   +2.50%  [ +2.25%,  +2.75%]  slower"},
        {73, "ntksSlower_8u             16384 ...   +2.50%  [ +2.25%,  +2.75%]  slower"},
        {60, "ntks...er_8u  16384...   +2.50%  [ +2.25%,  +2.75%]  slower"}};
    for (const Row& row : rows) {
        const auto lines = linesOf(handmade, row.width);
        EXPECT_NE(std::find(lines.begin(), lines.end(), row.line), lines.end())
            << row.width << "\n"
            << tableText(handmade.comparison, handmade.judgement, {row.width});
        for (const std::string& line : lines) {
            EXPECT_LE(columnsOf(line), row.width ? row.width : 1000) << line;
        }
    }
}

TEST(Table, ManyRowsAreCutDownToThoseThatSaySomething) {
    Handmade handmade = several();
    for (int i = 0; i < 43; ++i) {
        handmade.addSame("ntksPlain_8u");
    }
    EXPECT_NE(find(linesOf(handmade), "ntksPlain_8u"), -1) << "not many yet";
    for (int i = 0; i < 13; ++i) {
        handmade.addBegun("ntksBegun_8u");
    }
    handmade.add("ntksOpen_8u", 0.1, -3, 3, Verdict::open);
    handmade.addSame("ntksOther_8u").outcome.changed.status = 1;
    const auto lines = linesOf(handmade);
    for (const char* shown : {"ntksOpen_8u", "ntksOther_8u", "ntksLost_8u", "ntksSlower_8u",
                              "ntksFaster_8u", "44 same and 13 open cases are not shown: --all"}) {
        EXPECT_NE(find(lines, shown), -1) << shown;
    }
    EXPECT_EQ(find(lines, "ntksPlain_8u"), -1);
    EXPECT_EQ(find(lines, "ntksBegun_8u"), -1);
    const auto all = linesOf(handmade, 0, true);
    EXPECT_EQ(std::count_if(all.begin(), all.end(),
                            [](const std::string& line) { return line.starts_with("ntks"); }),
              65); // 63 cases, 2 means
}

TEST(Table, DisturbancesAreToldOfAllRounds) {
    Handmade handmade;
    handmade.addSame("f").starts[0].rounds.resize(3);
    handmade.lastEffect().disturbedShare = 1;
    handmade.addSame("g");
    const char* const line = "Other processes took the processor away in 75% of the rounds.";
    EXPECT_NE(find(linesOf(handmade), line), -1);
    handmade.judgement.effects[0].disturbedShare = 0.1;
    EXPECT_EQ(find(linesOf(handmade), "Other processes"), -1);
}

TEST(Table, OnlyTheUnitOfBytesIsExplained) {
    Handmade handmade;
    handmade.addSame("f");
    handmade.comparison.cases[0].outcome.base.unit = "call";
    EXPECT_EQ(find(linesOf(handmade), "Base and New"), -1);
}

} // namespace

} // namespace compare
