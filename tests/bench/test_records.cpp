// Results as lines, what ntkcompare and bench_plain write, and the tables made of them.
#include <gtest/gtest.h>

#include "chainlength.h"
#include "powertable.h"
#include "records.h"

namespace {

const std::string calibration =
    R"({"function":"f","parameters":{"Length":16,"File":"book1"},"clocks":900,)"
    R"("clocks_per_link":2,"levels":[{"added":0.01,"links":5,"chain_clocks":10,)"
    R"("measured":1.0102,"expected":1.01}]})"
    "\n"
    R"({"function":"g","parameters":{},"clocks":50,"clocks_per_link":2,"levels":)"
    R"([{"added":0.01,"links":1,"chain_clocks":2,"measured":1.05,"expected":1.04}]})"
    "\n";

const std::string compared = R"({"wall_seconds": 4.0, "cases": [
    {"function":"f","parameters":{"Length":16,"File":"book1"},"measured":true,"verdict":"slower",
     "seconds":0.75,"effect":{"ratio":1.012,"low":1.004,"high":null},
     "starts":[{"base":{"clocks":[1000,1100]}},{"base":{"clocks":[500]}}]},
    {"function":"g","parameters":{},"measured":true,"verdict":"same","seconds":0.5,
     "effect":{"ratio":1.0,"low":0.999,"high":1.001},"starts":[{"base":{"clocks":[50]}}]}]})";

TEST(ChainLength, ALinkThatAMeasuredCallMeetsOftenCountsAsOften) {
    const CallCost cost{900, 1900, 50, 1000}; // 20 clocks a link
    EXPECT_DOUBLE_EQ(cost.clocksPerLink(), 20);
    EXPECT_EQ(cost.linksFor(0.1), 5);
    EXPECT_EQ(cost.linksFor(0.11), 6); // 5.5
    EXPECT_EQ(cost.linksFor(0.001), 1);
}

TEST(Records, TheTruthOfARunIsTheChainOverTheMiddleTurnOfTheBase) {
    const KnownSubjects known = knownOf(calibration);
    const std::vector<Reading> slow = readingsOfCompare(compared, known, {0.01, true});
    ASSERT_EQ(slow.size(), 2U);
    EXPECT_EQ(slow[0].subject, "f Length=16 File=book1");
    EXPECT_DOUBLE_EQ(slow[0].truth, 1.01);
    EXPECT_DOUBLE_EQ(slow[0].estimate, 1.012);
    EXPECT_EQ(slow[0].called, Called::slower);
    EXPECT_EQ(slow[0].low, 1.004);
    EXPECT_FALSE(slow[0].hasInterval());
    EXPECT_TRUE(slow[0].hasNeighbour);
    EXPECT_EQ(slow[1].called, Called::neither);
    EXPECT_TRUE(slow[1].hasInterval());

    EXPECT_EQ(readingsOfCompare(compared, known, {0, false})[0].truth, 1);
    const TurnShare share = turnShareOf(compared, true);
    EXPECT_DOUBLE_EQ(share.inTurns, 1.25);
    EXPECT_DOUBLE_EQ(share.wall, 4);
}

TEST(Records, CasesThatSayNothingAreRefused) {
    const KnownSubjects known = knownOf(calibration);
    EXPECT_THROW(readingsOfCompare(compared, {}, {0, false}), std::runtime_error);
    EXPECT_THROW(readingsOfCompare(compared, known, {0.02, false}), std::runtime_error);
    EXPECT_THROW(readingsOfCompare(
                     R"({"cases":[{"function":"g","parameters":{},"measured":false,
                         "failures":[],"passed_over":"too short"}]})",
                     known, {0, false}),
                 std::runtime_error);
    EXPECT_THROW(readingsOfPlain("", "{}\n", known, {0, false}), std::runtime_error);
    Results results;
    EXPECT_THROW(addLine("{}", results), std::runtime_error);
    EXPECT_THROW(addLine("no JSON", results), std::runtime_error);
}

TEST(Records, PlainSidesAreJudgedByTheUTestAndByOnePercent) {
    const auto side = [](const char* times, double quickest) {
        return R"({"function":"g","parameters":{},"benchmark":)" + std::string(times) +
               R"(,"benchmark_seconds":0.25,"quickest":)" + std::to_string(quickest) +
               R"(,"quickest_seconds":0.5})"
               "\n";
    };
    const KnownSubjects known = knownOf(calibration);
    const std::string base = side("[1,2,3,4,5]", 1000);
    struct Case {
        const char* times;
        double quickest;
        Called byTest, byMinima;
    };
    for (const Case& c : {Case{"[6,7,8,9,10]", 1009, Called::slower, Called::neither},
                          Case{"[0.1,0.2,0.3,0.4,0.5]", 989, Called::faster, Called::faster},
                          Case{"[1.5,2.5,3.5,4.5,5.5]", 1011, Called::neither, Called::slower}}) {
        const auto readings =
            readingsOfPlain(base, side(c.times, c.quickest), known, {0.01, false});
        ASSERT_EQ(readings.size(), 2U);
        EXPECT_EQ(readings[0].called, c.byTest) << c.times;
        EXPECT_EQ(readings[1].called, c.byMinima) << c.quickest;
        EXPECT_DOUBLE_EQ(readings[1].estimate, c.quickest / 1000);
        EXPECT_DOUBLE_EQ(readings[0].truth, 1.04);
        EXPECT_DOUBLE_EQ(readings[0].seconds, 0.5);
        EXPECT_DOUBLE_EQ(readings[1].seconds, 1);
    }
}

TEST(Records, LinesOfResultsAreReadBack) {
    Results results;
    for (const Reading& reading : readingsOfCompare(compared, knownOf(calibration), {0.01, true})) {
        addLine(lineOf(reading), results);
    }
    addLine(lineOf(TurnShare{true, 9, 10}), results);
    addLine(lineOfRemark(remarkOnControl(knownOf(calibration))), results);
    ASSERT_EQ(results.readings.size(), 2U);
    EXPECT_EQ(results.readings[0].subject, "f Length=16 File=book1");
    EXPECT_EQ(results.readings[0].low, 1.004);
    EXPECT_EQ(results.readings[0].high, std::nullopt);
    EXPECT_EQ(results.readings[0].called, Called::slower);
    EXPECT_EQ(results.readings[0].truth, 1.01);
    EXPECT_EQ(results.readings[0].seconds, 0.75);
    EXPECT_EQ(results.shares.at(0).wall, 10);
    EXPECT_NE(results.remarks.at(0).find("by 0.510% in the median, by 1.00% at most"),
              std::string::npos)
        << results.remarks.at(0);
}

TEST(PowerTable, ShowsEachGroupAndWhatIsDemanded) {
    Results results;
    results.readings = readingsOfCompare(compared, knownOf(calibration), {0.01, true});
    results.remarks = {"A remark."};
    const std::string markdown = markdownTables(results);
    for (const char* line :
         {"| 1% | yes | ntkcompare | 2 | 1 (50.0%) | 0 (0.0%) | 1 (50.0%) | +0.0% to +1.2% | "
          "2.02% | 3.85% |\n",
          "| 1% | yes | 2 | 1 | 0 (0.0%) | 0.10% | 0.62 s |\n",
          "| 1% added: called slower, at least 95%, with the neighbour | 1 of 2 (50.0%) | NO |\n",
          "\nA remark.\n"}) {
        EXPECT_NE(markdown.find(line), std::string::npos) << line << markdown;
    }
    // As columns under their titles.
    const std::string plain = plainTables(results);
    const std::size_t title = plain.find("by  "), cell = plain.find("ntkcompare");
    const std::size_t secondLine = plain.find('\n') + 1;
    EXPECT_EQ(title, cell - secondLine) << plain;
}

} // namespace
