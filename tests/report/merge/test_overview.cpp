#include <gtest/gtest.h>

#include "merge.h"
#include "overview.h"
#include "runs.h"

namespace report {

namespace {

NamedValues at(long long length, const std::string& file = "") {
    return {{"Length", length}, {"CodeFile", file}};
}

TEST(Overview, ALineHasTheMediansOverTheCases) {
    report::Run run = runOf("1", {measured("ntksDecodeLZ4_8u", at(16, "a"), 4, {{"Ratio", 2.0}}),
                                  measured("ntksEncodeLZ4_8u", at(16, "a"), 3),
                                  measured("ntksDecodeLZ4_8u", at(16, "b"), 9, {{"Ratio", 3.0}}),
                                  failed("ntksDecodeLZ4_8u", at(16, "c"), "FUNCFAIL", ""),
                                  measured("ntksDecodeLZ4_8u", at(32, "a"), 10, {{"Ratio", 2.0}})});
    run.facts.ticksMHz = 3000;
    run.measurements[0].spread = 0.01;
    run.measurements[2].spread = 0.03;
    run.measurements[4].spread = 0.9;
    const Report report = merged({run}, {}).report;
    const auto functions = overviewOf(report, report.groups.at(0));
    ASSERT_EQ(functions.size(), 2u);
    const FunctionOverview& one = functions[0];
    EXPECT_EQ(one.function + " " + one.family, "ntksDecodeLZ4_8u LZ4");
    EXPECT_EQ(one.cases.size(), 4u);
    EXPECT_EQ(one.measured, 3);
    EXPECT_EQ(one.failed, 1);
    EXPECT_TRUE(one.isPerByte);
    EXPECT_EQ(one.median, 3) << "of 2, 3 and 5 clocks a byte";
    EXPECT_EQ(one.lowest, 2);
    EXPECT_EQ(one.highest, 5);
    EXPECT_EQ(one.ratio, 2);
    EXPECT_EQ(one.spread, 0.03);
    EXPECT_EQ(one.largestSpread, 0.9);
    EXPECT_EQ(one.megabytesPerSecond, 1000);
    EXPECT_EQ(one.byLength, (std::vector<std::pair<double, double>>{{16, 2.5}, {32, 5}}));
}

TEST(Overview, FamiliesStandTogether) {
    const Report report =
        merged({runOf("1", {measured("ntksEncodeLZ4_8u", {}, 1), measured("ntksAdler32_8u", {}, 1),
                            measured("ntksDecodeLZ4_8u", {}, 1, {{"Ratio", 2.0}}),
                            failed("ntksCRC32_8u", {}, "FAIL", "")})},
               {})
            .report;
    std::string order;
    for (const FunctionOverview& function : overviewOf(report, report.groups.at(0))) {
        order += function.function + " ";
        EXPECT_FALSE(function.megabytesPerSecond) << "no file tells the clock's frequency";
    }
    EXPECT_EQ(order, "ntksEncodeLZ4_8u ntksDecodeLZ4_8u ntksAdler32_8u ntksCRC32_8u ");
}

TEST(Overview, UnitsStayWhereBytesAreNotKnown) {
    report::Run run = runOf("1", {measured("memcpy", at(1), 7), measured("memcpy", at(2), 9)});
    run.facts.ticksMHz = 3000;
    const Report report = merged({run}, {}).report;
    const FunctionOverview one = overviewOf(report, report.groups.at(0)).at(0);
    EXPECT_FALSE(one.isPerByte);
    EXPECT_EQ(one.median, 8);
    EXPECT_FALSE(one.megabytesPerSecond);
}

TEST(Overview, LengthsOfFewCasesAreNoneOfTheFunction) {
    std::vector<Measurement> rows;
    for (const char* file : {"a", "b", "c", "d", "e"}) {
        rows.push_back(measured("ntksA_8u", at(16, file), 1));
    }
    rows.push_back(measured("ntksA_8u", at(21, "a"), 1));
    rows.push_back(measured("ntksA_8u", at(32, "b"), 1));
    rows.push_back(measured("ntksA_8u", at(32, "c"), 1));
    const Report report = merged({runOf("1", rows)}, {}).report;
    const auto lengths = overviewOf(report, report.groups.at(0)).at(0).byLength;
    EXPECT_EQ(lengths, (std::vector<std::pair<double, double>>{{16, 1}, {32, 1}}));
}

} // namespace

} // namespace report
