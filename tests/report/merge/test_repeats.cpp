#include <gtest/gtest.h>

#include "merge.h"
#include "repeats.h"
#include "runs.h"

namespace report {

namespace {

const Measurement row = measured("ntksA_8u", {}, 4);
const std::string exactStart = "2026-11-22T03:44:21+01:00";
const std::string tableStart = "Sun Nov 22 03:44:20 2026";

TEST(Repeats, ARunCountsOnce) {
    report::Run copy = runOf("1", {row});
    copy.file = "copy.jsonl";
    std::vector<report::Run> runs = {runOf("1", {row}), runOf("2", {row}), copy, copy};
    EXPECT_EQ(leaveOutRepeats(runs),
              (std::vector<std::string>(
                  2, "the run of 1 in copy.jsonl is also in run.jsonl; it counts once")));
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[1].facts.started, "2");
}

TEST(Repeats, RunsThatBeganTogetherAreNotOne) {
    const auto differs = [](void (*change)(report::Run & run)) {
        report::Run other = runOf("1", {row});
        change(other);
        std::vector<report::Run> runs = {runOf("1", {row}), other};
        return leaveOutRepeats(runs).empty() && runs.size() == 2;
    };
    EXPECT_TRUE(differs([](report::Run& run) { run.measurements[0].clocksPerUnit = 5; }));
    EXPECT_TRUE(differs([](report::Run& run) { run.measurements[0].function = "ntksB_8u"; }));
    EXPECT_TRUE(differs([](report::Run& run) { run.measurements.push_back(row); }));
    EXPECT_TRUE(differs([](report::Run& run) { run.facts.computer = "lap"; }));
    EXPECT_TRUE(differs([](report::Run& run) { run.facts.kind = "old"; }));
    EXPECT_TRUE(differs([](report::Run& run) { run.facts.build = "base"; }));
    EXPECT_TRUE(differs([](report::Run& run) { run.isExact = false; }));
    EXPECT_FALSE(differs([](report::Run& run) { run.file = "another"; }));
}

TEST(Repeats, AComparisonCountsOnce) {
    Comparison one;
    one.file = "one.json";
    one.started = "1";
    one.cases.resize(1);
    one.cases[0].ratio = 1.5;
    Comparison later = one, other = one, copy = one;
    later.started = "2";
    other.cases[0].ratio = 1.6;
    copy.file = "copy.json";
    std::vector<Comparison> comparisons = {one, later, other, copy};
    EXPECT_EQ(leaveOutRepeats(comparisons),
              std::vector<std::string>{
                  "the comparison of 1 in copy.json is also in one.json; it counts once"});
    EXPECT_EQ(comparisons.size(), 3u);
}

TEST(Repeats, TheTableOfARunWithRecordsIsLeftOut) {
    struct Row {
        std::string table, records;
        bool isLeftOut;
    };
    const Row rows[] = {{tableStart, exactStart, true},
                        {"Sun Nov 22 03:44:23 2026", exactStart, true},
                        {"Sun Nov 22 03:44:24 2026", exactStart, false},
                        {"Mon Nov 23 03:44:21 2026", exactStart, false},
                        {"", exactStart, false},
                        {tableStart, "", false},
                        {"yesterday", exactStart, false}};
    for (const Row& expected : rows) {
        report::Run table = runOf(expected.table, {row});
        table.isExact = false;
        table.file = "table.csv";
        std::vector<report::Run> runs = {table, runOf(expected.records, {row})};
        const std::vector<std::string> sentences = leaveOutTablesOfRecords(runs);
        EXPECT_EQ(sentences.size(), expected.isLeftOut ? 1u : 0u) << expected.table;
        EXPECT_EQ(runs.size(), expected.isLeftOut ? 1u : 2u);
        if (expected.isLeftOut) {
            EXPECT_EQ(sentences[0], "the table of " + expected.table +
                                        " in table.csv is left out: "
                                        "run.jsonl has the records of the same run");
            EXPECT_TRUE(runs[0].isExact);
        }
    }
}

TEST(Repeats, ATableOfAnotherRunAtThatTimeStays) {
    report::Run table = runOf(tableStart, {measured("ntksB_8u", {}, 4)});
    table.isExact = false;
    std::vector<report::Run> runs = {table, runOf(exactStart, {row})};
    EXPECT_TRUE(leaveOutTablesOfRecords(runs).empty()) << "other functions";
    runs[0] = runOf(tableStart, {row});
    runs[0].isExact = false;
    runs[0].facts.computer = "lap";
    EXPECT_TRUE(leaveOutTablesOfRecords(runs).empty()) << "another machine";
    EXPECT_EQ(runs.size(), 2u);
}

TEST(Merge, TellsWhatWasLeftOut) {
    report::Run table = runOf(tableStart, {row});
    table.isExact = false;
    Comparison comparison;
    comparison.file = "change.json";
    const Merged result =
        merged({runOf(exactStart, {row}), runOf(exactStart, {row}), table}, {comparison});
    EXPECT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.notes.size(), 1u);
    EXPECT_EQ(result.report.runs.size(), 1u);
    EXPECT_EQ(result.report.comparisons.size(), 1u);
    ASSERT_EQ(result.report.groups.size(), 1u);
    EXPECT_EQ(result.report.groups[0].cases.at(0).samples.size(), 1u);
}

} // namespace

} // namespace report
