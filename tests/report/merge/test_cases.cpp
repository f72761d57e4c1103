#include <gtest/gtest.h>

#include "cases.h"
#include "runs.h"
#include "statistics.h"

namespace report {

namespace {

TEST(Quantile, LiesBetweenItsNeighbours) {
    EXPECT_EQ(quantile({3}, 0.25), 3);
    EXPECT_EQ(quantile({1, 2}, 0.5), 1.5);
    EXPECT_EQ(quantile({1, 2, 4}, 0.5), 2);
    EXPECT_EQ(quantile({1, 2, 4, 8}, 0.25), 1.75);
    EXPECT_EQ(quantile({1, 2, 4, 8}, 0.75), 5);
    EXPECT_EQ(quantile({1, 2, 4, 8}, 1), 8);
}

TEST(Cases, TheSameCombinationOfSeveralRunsIsOne) {
    const NamedValues plain = {{"CodeLength", 16384LL}, {"CodeFile", "/corpus/bib"}};
    const NamedValues turned = {{"CodeFile", "/corpus/bib"}, {"CodeLength", 16384LL}};
    const NamedValues other = {{"CodeLength", 32768LL}, {"CodeFile", "/corpus/bib"}};
    Measurement otherTypes = measured("ntksA_8u", plain, 9);
    otherTypes.types = "16u";
    const std::vector<report::Run> runs = {
        runOf("1", {measured("ntksA_8u", plain, 4, {{"Length", 16000LL}, {"Ratio", 1.5}})}),
        runOf("2", {measured("ntksB_8u", plain, 7), measured("ntksA_8u", other, 8),
                    measured("ntksA_8u", turned, 1)}),
        runOf("3", {otherTypes, measured("ntksA_8u", plain, 2)}),
        runOf("4", {measured("ntksA_8u", plain, 1000)})};
    const std::vector<Case> cases = casesOf(runs, {0, 1, 2});
    ASSERT_EQ(cases.size(), 4u);
    const Case& one = cases[0];
    EXPECT_EQ(one.function, "ntksA_8u");
    EXPECT_EQ(common::parametersText(one.parameters), "CodeLength=16384 CodeFile=/corpus/bib");
    EXPECT_EQ(one.file, "bib");
    EXPECT_EQ(one.length, 16000) << "what was really measured";
    EXPECT_EQ(one.ratio, 1.5);
    ASSERT_EQ(one.samples.size(), 3u);
    EXPECT_EQ(one.samples[1].run, 1);
    EXPECT_EQ(one.samples[1].measurement, 2);
    EXPECT_EQ(one.samples[1].clocksPerUnit, 1);
    EXPECT_EQ(one.smallest, 1);
    EXPECT_EQ(one.median, 2);
    EXPECT_EQ(one.largest, 4);
    EXPECT_EQ(one.spread, (3 - 1.5) / 2);
    EXPECT_EQ(cases[1].function, "ntksB_8u");
    EXPECT_EQ(cases[2].length, 32768) << "what was asked for";
    EXPECT_EQ(cases[3].types, "16u");
}

TEST(Cases, ASingleSampleHasTheSpreadOfItsMeasurement) {
    Measurement row = measured("ntksA_8u", {}, 4);
    row.spread = 0.07;
    EXPECT_EQ(casesOf({runOf("1", {row})}, {0}).at(0).spread, 0.07);
    row.spread.reset();
    EXPECT_FALSE(casesOf({runOf("1", {row})}, {0}).at(0).spread);
    row.clocksPerUnit = 0;
    EXPECT_FALSE(casesOf({runOf("1", {row, row})}, {0}).at(0).spread) << "no spread over nothing";
}

TEST(Cases, TheWorstResultStandsWithItsComment) {
    Measurement good = measured("ntksA_8u", {}, 4);
    good.comment = "nLps=7";
    Measurement later = good;
    later.comment = "nLps=8";
    const Measurement note = failed("ntksA_8u", {}, "DATAWRN", "twice");
    const Measurement fault = failed("ntksA_8u", {}, "EXCPTFAIL", "SIGSEGV");
    struct Row {
        std::vector<Measurement> rows;
        const char *result, *comment;
        std::size_t samples;
    };
    const Row rows[] = {{{good, later}, "OK", "nLps=7", 2},
                        {{good, fault, later}, "EXCPTFAIL", "SIGSEGV", 2},
                        {{fault, note}, "EXCPTFAIL", "SIGSEGV", 0},
                        {{good, note}, "DATAWRN", "twice", 1}};
    for (const Row& row : rows) {
        const Case one = casesOf({runOf("1", row.rows)}, {0}).at(0);
        EXPECT_EQ(one.result, row.result);
        EXPECT_EQ(one.comment, row.comment);
        EXPECT_EQ(one.samples.size(), row.samples);
    }
    // A failed call has no clocks worth telling, whatever the file has.
    Measurement odd = fault;
    odd.clocksPerUnit = 1;
    EXPECT_TRUE(casesOf({runOf("1", {odd})}, {0}).at(0).samples.empty());
}

TEST(Cases, ResultsAreOrderedBySeverity) {
    const char* const ascending[] = {
        "UNDEFINED", "OK",       "ACCURWRN", "BADSTSWRN", "DATAWRN", "FUNCWRN",           "WRN",
        "ACCURFAIL", "DATAFAIL", "FUNCFAIL", "EXCPTFAIL", "FAIL",    "of a later version"};
    for (std::size_t i = 1; i < std::size(ascending); ++i) {
        EXPECT_EQ(worseResult(ascending[i - 1], ascending[i]), ascending[i]);
        EXPECT_EQ(worseResult(ascending[i], ascending[i - 1]), ascending[i]);
        EXPECT_EQ(isFailure(ascending[i]), i >= 7) << ascending[i];
    }
}

} // namespace

} // namespace report
