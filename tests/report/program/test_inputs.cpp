#include "program.h"

namespace report {

namespace {

using Inputs = Program;

// What is wrong is one sentence on standard error; what could be read is reported.
TEST_F(Inputs, WhatCannotBeReadIsOneSentenceAndTheRestIsReported) {
    struct Row {
        std::vector<std::string> arguments;
        const char* sentence;
        bool hasReport;
    };
    const std::string good = table("Sun Nov 22 03:44:21 2026", 4);
    const std::string names = good.substr(0, good.find("ntksEncode"));
    write("no-table", "some text\n");
    write("no-rows.csv", names);
    write("bad-cell.csv", good + "ntksEncodeLZ4_8u,8u,1,bib,four,e,OK,-,-\n");
    write("columns.csv", "Processor,A processor  x2  2.00 GHz\nComputer,desk\nLibrary,ntkDC  "
                         "12.0.0  Nov 22 2026\nStart,then\nFunction,Types,Parm1,Clocks,Result\n"
                         "ntksEncodeLZ4_8u,8u,1,4,OK\n");
    write("copy.csv", good);
    std::string slow = good;
    slow.replace(slow.find("  2.00 GHz"), 10, "");
    write("no-frequency.csv", slow);
    write("newer.jsonl", R"({"record":"run","version":2})"
                         "\n");
    write("other.json", "{\n}\n");
    const Row rows[] = {
        {{"nowhere"}, "cannot read nowhere: No such file or directory", false},
        {{"no-table"}, "no-table is no performance table: ", false},
        {{"no-rows.csv"}, "no-rows.csv has a table without rows", false},
        {{"a.csv", "nowhere"}, "cannot read nowhere: No such file", true},
        {{"no-rows.csv", "a.csv"}, "no-rows.csv has a table without rows", true},
        {{"bad-cell.csv"}, "bad-cell.csv, line 7: Clocks is 'four', which is no number", true},
        {{"a.csv", "columns.csv"},
         "columns.csv has the columns Parm1, a.csv has Length, CodeFile",
         true},
        {{"a.csv", "a.csv"}, "in a.csv is also in a.csv; it counts once", true},
        {{"no-frequency.csv", "--json=-"}, "1 measurement left out of --json: ", false},
        {{"newer.jsonl"}, "newer.jsonl is of version 2 of the format", false},
        {{"other.json", "a.csv"}, "other.json is JSON, but neither records", true},
        {{"a.csv", "./copy.csv"}, "in ./copy.csv is also in a.csv; it counts once", true}};
    for (const Row& row : rows) {
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(outcome.status, 1) << row.sentence;
        EXPECT_EQ(outcome.errors.rfind("ntkreport: ", 0), 0u) << outcome.errors;
        EXPECT_NE(outcome.errors.find(row.sentence), std::string::npos) << outcome.errors;
        EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
        EXPECT_EQ(outcome.output.find("ntksEncodeLZ4_8u") != std::string::npos, row.hasReport)
            << row.sentence;
    }
}

TEST_F(Inputs, WithNothingToReportNothingIsWritten) {
    write("old.csv", "old");
    const Outcome outcome = run({"nowhere", "--csv", "old.csv", "--markdown=new.md"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(read("old.csv"), "old");
    EXPECT_FALSE(fs::exists(path("new.md")));
}

TEST_F(Inputs, AKilledRunIsToldAndIsNoError) {
    write("killed.csv", read("a.csv") + "ntksEncodeLZ4_8u,8u,327");
    const Outcome outcome = run({"killed.csv"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.errors.find("is broken, so it was killed"), std::string::npos);
    EXPECT_NE(outcome.output.find("ntksEncodeLZ4_8u"), std::string::npos);
}

TEST_F(Inputs, APipeIsAFileAsWell) {
    Command command;
    command.program = "/bin/sh";
    command.arguments = {"-c", "cat a.csv | exec " NTK_REPORT_FILE " /dev/stdin"};
    command.directory = m_folder.string();
    const Outcome outcome = runCommand(command);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("ntksEncodeLZ4_8u"), std::string::npos);
}

TEST_F(Inputs, NamesInSentencesCannotCommandTheTerminal) {
    const Outcome outcome = run({"no\x1b[2Jwhere"});
    EXPECT_EQ(outcome.errors, "ntkreport: cannot read no?[2Jwhere: No such file or directory\n");
}

} // namespace

} // namespace report
