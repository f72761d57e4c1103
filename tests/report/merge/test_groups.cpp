#include <gtest/gtest.h>

#include "groups.h"
#include "keys.h"
#include "runs.h"

namespace report {

namespace {

const Measurement row = measured("ntksA_8u", {{"CodeLength", 1LL}}, 4);

TEST(Keys, ThoseThatChangeNoFigureDoNotCount) {
    report::Run run = runOf("1", {row});
    run.facts.keys = {"-B",    "-onight", "-O",   "-r",    "-Rx",
                      "-u",    "-U",      "-q+",  "-g",    "-nx",
                      "-lout", "-x",      "-xf",  "-fLZ4", "-f=a",
                      "-tx",   "-mx",     "-kor", "-Fx",   "-s-",
                      "-LERR", "-HO",     "-P",   "-A",    "-dCodeLength=1;2",
                      "-J2",   "book1"};
    const auto names = caseParameters({run});
    EXPECT_TRUE(decisiveKeys(run, names).empty()) << decisiveKeys(run, names).front();
    run.facts.keys = {"-YHIGH", "-B",  "-TSSE42", "-dVectorAlign=1", "-c1", "-j2",
                      "-SU",    "-iq", "-@x",     "-dCode=1",        "-W",  "-C",
                      "-px"};
    EXPECT_EQ(decisiveKeys(run, names),
              (std::vector<std::string>{"-@x", "-C", "-SU", "-TSSE42", "-W", "-YHIGH", "-c1",
                                        "-dCode=1", "-dVectorAlign=1", "-iq", "-j2", "-px"}));
}

TEST(Groups, RunsOfOneMachineBuildAndKeysAreOne) {
    report::Run other = runOf("2", {row});
    other.facts.keys = {"-B", "-fLZ4"};
    other.facts.ticksMHz = 2600; // known later
    other.facts.system = "a new kernel";
    const Groups found = groupsOf({runOf("1", {row}), other});
    ASSERT_EQ(found.groups.size(), 1u);
    EXPECT_EQ(found.groups[0].label, "");
    EXPECT_EQ(found.groups[0].runs, (std::vector<int>{0, 1}));
    EXPECT_EQ(found.groups[0].cases.at(0).samples.size(), 2u);
    EXPECT_TRUE(found.problems.empty());
}

TEST(Groups, WhatDiffersIsTheLabel) {
    struct Row {
        void (*change)(report::Run& run);
        const char *first, *second;
        bool isSeries = false; // they are one history
    };
    const Row rows[] = {
        {[](report::Run& run) { run.facts.libraries[0].version = "12.0.1"; }, "ntkDC 12.0.0",
         "ntkDC 12.0.1", true},
        {[](report::Run& run) { run.facts.libraries[0].date = "Nov 23 2026"; }, "Nov 22 2026",
         "Nov 23 2026", true},
        {[](report::Run& run) {
             run.facts.libraries[0].files = {"/new/bin/../libntkdc.so.12", "/new/x"};
         },
         "/lib", "/new", true},
        {[](report::Run& run) {
             run.facts.keys = {"-TSSE42", "-B"};
         },
         "(plain)", "(-TSSE42)"},
        {[](report::Run& run) { run.facts.computer = "lap"; }, "on desk A processor x2",
         "on lap A processor x2"},
        {[](report::Run& run) { run.facts.processor = "Another"; }, "on desk A processor x2",
         "on desk Another x2"},
        {[](report::Run& run) { run.facts.processors = 4; }, "on desk A processor x2",
         "on desk A processor x4"},
        {[](report::Run& run) { run.isExact = false; }, "records", "table", true},
        {[](report::Run& run) {
             run.facts.libraries[0].version = "12.0.1";
             run.facts.keys = {"-TSSE42"};
         },
         "ntkDC 12.0.0 (plain)", "ntkDC 12.0.1 (-TSSE42)"}};
    for (const Row& expected : rows) {
        report::Run changed = runOf("2", {row});
        expected.change(changed);
        const Groups found = groupsOf({runOf("1", {row}), changed, runOf("3", {row})});
        ASSERT_EQ(found.groups.size(), 2u) << expected.second;
        EXPECT_EQ(found.groups[0].label, expected.first);
        EXPECT_EQ(found.groups[1].label, expected.second);
        EXPECT_EQ(found.groups[0].runs, (std::vector<int>{0, 2}));
        EXPECT_EQ(found.groups[1].runs, std::vector<int>{1});
        EXPECT_EQ(found.groups[1].cases.at(0).samples.at(0).run, 1);
        EXPECT_TRUE(found.problems.empty()) << expected.second;
        EXPECT_EQ(found.groups[0].series == found.groups[1].series, expected.isSeries)
            << expected.second;
    }
}

TEST(Groups, KeysForOtherFunctionsTellNothingApart) {
    report::Run lz4 = runOf("1", {measured("ntksB_8u", {{"CodeFile", "bib"}}, 4)});
    report::Run checksum = runOf("2", {row});
    lz4.facts.keys = checksum.facts.keys = {"-dCodeFile=bib", "-dMethod=Manual"};
    report::Run other = lz4;
    other.facts.keys = {"-dCodeFile=book1", "-dMethod=Manual"};
    EXPECT_EQ(groupsOf({checksum, lz4, other}).groups.size(), 1u);
}

// The runs of a cluster: the computers of a kind have measured parts of the same.
TEST(Groups, ComputersOfOneKindAreOneMachineUnlessTheirProcessorsDiffer) {
    const auto cell = [](const char* kind, const char* build, const char* computer,
                         const char* processor) {
        report::Run run = runOf("1", {row});
        run.facts.kind = kind;
        run.facts.build = build;
        run.facts.computer = computer;
        run.facts.processor = processor;
        run.facts.libraries[0].files = {std::string("/") + build + "/libntkdc.so.12"};
        return run;
    };
    const Groups found = groupsOf({cell("old", "base", "n1", "A"), cell("old", "base", "n2", "A"),
                                   cell("old", "base", "n3", "B"), cell("new", "base", "n4", "A"),
                                   cell("old", "trial", "n1", "A")});
    std::vector<std::string> labels;
    for (const Group& group : found.groups) {
        labels.push_back(group.label);
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"base on old A x2", "base on old B x2",
                                                "base on new A x2", "trial on old A x2"}));
    EXPECT_EQ(found.groups[0].runs, (std::vector<int>{0, 1}));
}

TEST(Groups, EqualLabelsAreNumbered) {
    report::Run other = runOf("2", {row});
    other.facts.libraries[0].files = {"/lib/libntkdc.so.12", "/lib/more"};
    report::Run third = runOf("3", {row});
    third.facts.libraries[0].files = {};
    const Groups found = groupsOf({runOf("1", {row}), other, third});
    ASSERT_EQ(found.groups.size(), 3u);
    EXPECT_EQ(found.groups[0].label, "/lib");
    EXPECT_EQ(found.groups[1].label, "/lib #2");
    EXPECT_NE(found.groups[2].label, "/lib");
}

TEST(Groups, TablesWithOtherColumnsAreApartAndSaid) {
    report::Run table = runOf("1", {row}), other = runOf("2", {row});
    table.isExact = other.isExact = false;
    table.columns = {"Length", "CodeFile"};
    other.columns = {"Parm1"};
    other.file = "other.csv";
    const Groups found = groupsOf({table, other});
    EXPECT_EQ(found.groups.size(), 2u);
    EXPECT_EQ(found.problems,
              std::vector<std::string>{"other.csv has the columns Parm1, run.jsonl has Length, "
                                       "CodeFile; they are shown apart"});
    other.facts.computer = "lap";
    EXPECT_TRUE(groupsOf({table, other}).problems.empty()) << "nobody would match them anyway";
}

} // namespace

} // namespace report
