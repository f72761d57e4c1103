#include <gtest/gtest.h>

#include <cmath>

#include "handmade.h"
#include "words.h"

namespace report {

namespace {

TEST(Texts, NumbersHaveThreeDigitsAndNoExponent) {
    const std::pair<double, const char*> cases[] = {
        {0.0541, "0.0541"}, {4.9213, "4.92"}, {9.996, "10.0"},          {14.25, "14.2"},
        {99.96, "100"},     {1324.4, "1320"}, {48438, "48400"},         {0, "0.00"},
        {1, "1.00"},        {1000, "1000"},   {0.00012345, "0.000123"}, {std::nan(""), "?"}};
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(shortText(number), text) << number;
    }
    EXPECT_EQ(shortText(std::optional<double>()), "");
}

TEST(Texts, LengthsHaveUnitsWhereTheyAreWhole) {
    const std::pair<double, const char*> cases[] = {
        {0, "0"},         {1023, "1023"},  {1024, "1K"},      {16384, "16K"},
        {16385, "16385"}, {1048576, "1M"}, {1049600, "1025K"}};
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(lengthText(bytes), text);
    }
}

TEST(Texts, FactsTellWhereWithWhatAndWhen) {
    Handmade made;
    made.add("ntksA_8u", {}, {1});
    EXPECT_EQ(factsOf(made.report, made.group()),
              (std::vector<std::string>{"1 run, 2026-11-22T01:02:03+00:00",
                                        "A processor x2 at 2.00 GHz (desk)",
                                        "ntkDC 12.0.0, Nov 22 2026"}));
    made.run(1).facts.started = "later";
    made.run(1).isComplete = false;
    EXPECT_EQ(factsOf(made.report, made.group())[0],
              "2 runs, 2026-11-22T01:02:03+00:00 to later, 1 not to its end");
    made.run().facts = Facts();
    EXPECT_EQ(factsOf(made.report, made.group())[1], "");
}

TEST(Texts, FailuresAreThoseOfCasesAndOfTestsOnce) {
    Handmade made;
    made.add("ntksA_8u", {}, {1});
    made.addFailed("ntksB_8u", {{"CodeLength", 5LL}, {"CodeFile", "/c/bib"}}, "FUNCFAIL", "-4");
    made.add("ntksC_8u", {}, {1}).result = "DATAWRN";
    for (const std::size_t run : {0u, 1u}) {
        made.run(run).tests = {{"ntksD_8u", "TimD", "DATAFAIL", "Can't open file x", 1},
                               {"ntksE_8u", "TimE", "OK", "", 1}};
    }
    EXPECT_EQ(failuresOf(made.report, made.group()),
              (std::vector<std::string>{"ntksB_8u CodeLength=5 CodeFile=bib: FUNCFAIL, -4",
                                        "ntksD_8u: DATAFAIL, Can't open file x"}));
}

TEST(Texts, SpreadNamesTheWidestCase) {
    Handmade made;
    made.add("ntksA_8u", {}, {1}).spread = 0.01;
    made.add("ntksB_8u", {{"CodeLength", 5LL}}, {1}).spread = 0.3;
    made.add("ntksC_8u", {}, {1}).spread = 0.05;
    made.add("ntksD_8u", {}, {1});
    EXPECT_EQ(spreadText(overviewOf(made.report, made.group())),
              "Spread: median 5.00%; above 5% in 1 of 3 cases; largest 30.00%, ntksB_8u "
              "CodeLength=5");
    EXPECT_EQ(spreadText({}), "");
}

TEST(Texts, ChangesAreSortedByVerdictThenBySize) {
    Comparison comparison;
    const auto add = [&](const char* name, const char* verdict, std::optional<double> ratio) {
        ComparedCase one;
        one.function = name;
        one.verdict = verdict;
        one.ratio = ratio;
        comparison.cases.push_back(one);
    };
    add("a", "faster", 0.9);
    add("b", "slower", 1.1);
    add("c", "same", 1.5);
    add("d", "slower", 1.3);
    add("e", "failed", std::nullopt);
    add("f", "faster", 0.5);
    add("g", "open", 3);
    add("h", "passed over", std::nullopt);
    std::string order;
    for (const ComparedCase* one : changesOf(comparison)) {
        order += one->function;
    }
    EXPECT_EQ(order, "edbfa");
    EXPECT_EQ(countsText(comparison),
              "1 failed, 2 slower, 2 faster, 1 same, 1 open, 1 passed over");
}

TEST(Texts, DifferencesHaveTheirIntervals) {
    EXPECT_EQ(differenceText({}, 1, 2), "");
    EXPECT_EQ(differenceText(1.0102, 0.995, {}), "+1.02%  [-0.50%, ?]");
}

TEST(Texts, OfManyBuildsTheLastIsShown) {
    Report report;
    report.groups = std::vector<Group>(3);
    EXPECT_EQ(shownGroups(report).size(), 3u);
    EXPECT_EQ(hiddenText(report), "");
    report.groups.resize(5);
    report.groups[1].series = 1;
    EXPECT_EQ(shownGroups(report),
              (std::vector<const Group*>{&report.groups[1], &report.groups[4]}));
    EXPECT_EQ(hiddenText(report).rfind("3 builds ", 0), 0u) << hiddenText(report);
}

} // namespace

} // namespace report
