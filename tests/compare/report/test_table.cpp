#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "format.h"
#include "handmade.h"

namespace compare {

namespace {

std::vector<std::string> linesOf(const Handmade& handmade, int width = 0, bool showsAll = false) {
    std::istringstream text(tableText(handmade.comparison, handmade.judgement, {width, showsAll}));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
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
    handmade.add("ntksSame_8u", 0.1, -0.2, 0.4, Verdict::same);
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

TEST(Table, FailuresComeFirstThenTheSlowest) {
    const auto lines = linesOf(several());
    const char* const order[] = {"Function",      "ntksLost_8u", "ntksBoth_8u",
                                 "ntksSlower_8u", "ntksSame_8u", "ntksFaster_8u",
                                 "ntksB_8u ",     "ntksA_8u ",   "all "};
    int last = -1;
    for (const char* beginning : order) {
        const int at = find(lines, beginning);
        EXPECT_GT(at, last) << beginning;
        last = at;
    }
    EXPECT_EQ(find(lines, "ntksLeft_8u"), -1);
    EXPECT_EQ(find(lines, "ntksOnly_8u"), -1) << "a mean of one case";
}

TEST(Table, ARowHasClocksDifferenceIntervalAndVerdictBelowTheirTitles) {
    const auto lines = linesOf(several());
    const std::string title = lines[static_cast<std::size_t>(find(lines, "Function"))];
    const std::string slower = lines[static_cast<std::size_t>(find(lines, "ntksSlower_8u"))];
    const std::string faster = lines[static_cast<std::size_t>(find(lines, "ntksFaster_8u"))];
    EXPECT_EQ(slower,
              "ntksSlower_8u  CodeLength=16384 CodeFile=book1  4.000  4.100  e      +2.50%  "
              "[ +2.25%,  +2.75%]  slower");
    EXPECT_EQ(faster,
              "ntksFaster_8u  CodeLength=16384 CodeFile=book1  4.000  3.500  e     -12.50%  "
              "[-12.75%, -12.25%]  faster");
    EXPECT_EQ(title.find("Verdict"), slower.find("slower", 20));
    EXPECT_EQ(title.find("Parameters"), slower.find("CodeLength"));
}

TEST(Table, WhatIsToBeSaidOfACaseStandsBesideItsVerdict) {
    struct Row {
        void (*change)(Handmade&);
        const char* end;
    };
    const Row rows[] = {
        {[](Handmade& h) { h.add("f", 0.1, -0.2, 0.4, Verdict::same); }, "]  same"},
        {[](Handmade& h) { h.add("f", 0.1, -2, 1.9, Verdict::open).stop = Stop::time; },
         "]  open (1 s used up)"},
        {[](Handmade& h) { h.add("f", 10, 8, 12, Verdict::slower).stop = Stop::budget; },
         "]  slower (budget used up)"},
        {[](Handmade& h) {
             h.add("f", 1, 0, 0, Verdict::open).stop = Stop::interrupted;
             h.lastEffect().interval.low = -infinite;
             h.lastEffect().interval.high = infinite;
         },
         "+1.00%  no interval yet  open (interrupted)"},
        {[](Handmade& h) { h.add("f", 0.5, 0.3, 0.7, Verdict::slower); }, "]  slower (tolerated)"},
        {[](Handmade& h) {
             h.add("f", 0.1, -0.2, 0.4, Verdict::same);
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
             h.add("f", 0.1, -0.2, 0.4, Verdict::same).outcome.changed.status = 1;
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

TEST(Table, FailuresAndOutputsThatDifferStandBelowTheirCase) {
    Handmade handmade = several();
    handmade.comparison.cases[0].outcome.base.values = {{"Size", 100LL}};
    handmade.comparison.cases[0].outcome.changed.values = {{"Size", 110LL}};
    const auto lines = linesOf(handmade);
    const auto failed = static_cast<std::size_t>(find(lines, "ntksLost_8u"));
    EXPECT_EQ(lines[failed + 1], "    failed on the new side: killed by SIGSEGV in a turn");
    EXPECT_EQ(lines[failed + 2], "      | first line");
    EXPECT_EQ(lines[failed + 3], "      | last line");
    const auto same = static_cast<std::size_t>(find(lines, "ntksSame_8u"));
    EXPECT_EQ(lines[same + 1], "    outputs differ: Size 100 -> 110");
    const auto slower = static_cast<std::size_t>(find(lines, "ntksSlower_8u"));
    EXPECT_EQ(slower + 1, same) << "a remark where there is nothing to say";
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
        handmade.add("ntksPlain_8u", 0.1, -0.2, 0.4, Verdict::same);
    }
    EXPECT_NE(find(linesOf(handmade), "ntksPlain_8u"), -1) << "not many yet";
    for (int i = 0; i < 13; ++i) {
        handmade.add("ntksBegun_8u", 0.1, 0, 0, Verdict::open);
        handmade.lastEffect().interval.low = -infinite;
        handmade.lastEffect().interval.high = infinite;
    }
    handmade.add("ntksOpen_8u", 0.1, -3, 3, Verdict::open);
    handmade.add("ntksOther_8u", 0.1, -0.2, 0.4, Verdict::same).outcome.changed.status = 1;
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
    handmade.add("f", 0.1, -0.2, 0.4, Verdict::same).starts[0].rounds.resize(3);
    handmade.lastEffect().disturbedShare = 1;
    handmade.add("g", 0.1, -0.2, 0.4, Verdict::same);
    const char* const line = "Other processes took the processor away in 75% of the rounds.";
    EXPECT_NE(find(linesOf(handmade), line), -1);
    handmade.judgement.effects[0].disturbedShare = 0.1;
    EXPECT_EQ(find(linesOf(handmade), "Other processes"), -1);
}

TEST(Table, TheUnitOfBytesIsExplained) {
    Handmade handmade;
    handmade.add("f", 0.1, -0.2, 0.4, Verdict::same);
    EXPECT_NE(find(linesOf(handmade), "Base and New are clocks per unit; e is an element"), -1);
    handmade.comparison.cases[0].outcome.base.unit = "call";
    EXPECT_EQ(find(linesOf(handmade), "Base and New"), -1);
}

TEST(Table, KeysOfOneSideStandBesideIt) {
    Handmade handmade = several();
    handmade.comparison.sides.changed.keys.emplace_back("-TAVX2");
    const auto lines = linesOf(handmade);
    EXPECT_EQ(lines[0], "Base: /ref, 12.0.0, keys -fLZ4");
    EXPECT_EQ(lines[1], "New:  own, 12.0.1, keys -fLZ4 -TAVX2");
    EXPECT_EQ(find(lines, "Keys:"), -1);
}

TEST(Table, EndsWithWhatHoldsForAll) {
    Handmade handmade = several();
    handmade.comparison.isComplete = false;
    handmade.comparison.unpaired = {{Side::base, "ntksAlone_8u", {{"A", 1LL}}}};
    const std::string common = "-dX: no test asked for it";
    handmade.comparison.remarks = {{common}, {common, "-iY: there is no such file"}};
    const auto lines = linesOf(handmade);
    const char* const expected[] = {
        "Base: /ref, 12.0.0",
        "New:  own, 12.0.1",
        "Keys: -fLZ4",
        "On:   A processor, processor 1, 1 min 15 s in 12 passes",
        "INCOMPLETE: the budget was used up",
        "without effect: -dX: no test asked for it",
        "without effect on the new side: -iY: there is no such file",
        "only on the base side: ntksAlone_8u A=1",
        "1 case passed over: file too short",
        "Verdicts:    1 slower (1 by more than 1%), 1 faster, 1 same, 2 failed, 1 passed over",
        "Confidence:  95% that all of slower and faster are true",
        "Noise floor: intervals of +-0.25% in the median case, +-0.30% in the widest",
        ("Of 3 decided cases 1 is slower by more than 1%, 1 is faster; 1 case failed on the new "
         "side only.")};
    int last = -1;
    for (const char* beginning : expected) {
        const int at = find(lines, beginning);
        EXPECT_GT(at, last) << beginning;
        last = at;
    }
    EXPECT_EQ(find(lines, "without effect on the new side: " + common), -1); // said of both
    handmade.comparison.cases[0].stop = Stop::interrupted;
    EXPECT_NE(find(linesOf(handmade), "INCOMPLETE: interrupted"), -1);
    EXPECT_EQ(find(linesOf(several()), "INCOMPLETE"), -1);
}

} // namespace

} // namespace compare
