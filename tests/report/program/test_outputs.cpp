#include <sys/stat.h>

#include "program.h"

namespace report {

namespace {

using Outputs = Program;

TEST_F(Outputs, SeveralAreWrittenAtOnceAndTheTerminalStaysQuiet) {
    const Outcome outcome = run({"--csv", "out.csv", "a.csv", "--markdown=out.md", "b.csv"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.output + outcome.errors, "");
    EXPECT_NE(read("out.csv").find(",2,4,4.5,5,"), std::string::npos) << read("out.csv");
    EXPECT_EQ(read("out.md").rfind("## Performance\n", 0), 0u);
}

TEST_F(Outputs, EveryFormWritesSomething) {
    for (const char* form : {"--html", "--json", "--bmf", "--smaller-is-better", "--benchstat",
                             "--markdown", "--csv"}) {
        const Outcome printed = run({"a.csv", form, "-"});
        EXPECT_EQ(printed.status, 0) << form << printed.errors;
        EXPECT_NE(printed.output.find("EncodeLZ4"), std::string::npos) << form;
        EXPECT_EQ(run({"a.csv", form, "out"}).output, "");
        EXPECT_EQ(read("out"), printed.output) << form;
    }
}

TEST_F(Outputs, TheSummaryHasColoursOnATerminalUnlessUnwanted) {
    const auto hasColours = [&](Console console, const std::vector<std::string>& environment) {
        return run({"a.csv"}, console, environment).output.find('\x1b') != std::string::npos;
    };
    EXPECT_TRUE(hasColours(Console::terminal, {"NO_COLOR=", "TERM=xterm"}));
    EXPECT_FALSE(hasColours(Console::terminal, {"NO_COLOR=1", "TERM=xterm"}));
    EXPECT_FALSE(hasColours(Console::terminal, {"NO_COLOR=", "TERM=dumb"}));
    EXPECT_FALSE(hasColours(Console::read, {"NO_COLOR=", "TERM=xterm"}));
}

TEST_F(Outputs, TheSummaryFitsTheTerminal) {
    const std::string output = run({"a.csv"}, Console::terminal, {"NO_COLOR=1", "LC_ALL=C"}).output;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 61u) << line; // with the terminal's CR
    }
    EXPECT_NE(output.find("ntksEncodeLZ4_8u"), std::string::npos);
}

TEST_F(Outputs, BarsAreBlocksWhereTheLocaleHasThem) {
    const auto output = [&](const char* locale) {
        return run({"a.csv"}, Console::read, {std::string("LC_ALL=") + locale}).output;
    };
    EXPECT_NE(output("C.UTF-8").find("\u2588"), std::string::npos);
    EXPECT_EQ(output("C").find("\u2588"), std::string::npos);
    EXPECT_NE(output("C").find('#'), std::string::npos);
}

TEST_F(Outputs, WhatCannotBeWrittenIsSaidBeforeAnythingIs) {
    const std::pair<const char*, const char*> files[] = {
        {"no/such/folder.csv", "cannot write no/such/folder.csv: No such file or directory"},
        {".", "cannot write .: Is a directory"},
        {"pipe", "cannot write pipe: it is no regular file"},
        {"/dev/null", "cannot write /dev/null: it is no regular file"}};
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    for (const auto& [file, sentence] : files) {
        const Outcome outcome = run({"a.csv", "--markdown", "out.md", "--csv", file});
        EXPECT_EQ(outcome.status, 1) << file;
        EXPECT_NE(outcome.errors.find(sentence), std::string::npos) << outcome.errors;
        EXPECT_FALSE(fs::exists(path("out.md"))) << file;
    }
}

TEST_F(Outputs, ALostStandardOutputIsAnError) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"a.csv"}, {"a.csv", "--csv=-"}, {"-h"}}) {
        const Outcome outcome = run(arguments, Console::fullDisk);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.errors.find("cannot write to standard output: No space left on device"),
                  std::string::npos)
            << outcome.errors;
    }
}

TEST_F(Outputs, AFileBeyondTheLimitOfItsSizeIsAnErrorAndLeavesNothing) {
    Command command;
    command.program = "/bin/sh";
    command.directory = m_folder.string();
    for (const char* output : {"out", "- >printed"}) {
        command.arguments = {"-c", "ulimit -f 8; exec " NTK_REPORT_FILE " a.csv --html " +
                                       std::string(output)};
        const Outcome outcome = runCommand(command);
        EXPECT_EQ(outcome.status, 1) << output;
        EXPECT_NE(outcome.errors.find(": File too large"), std::string::npos) << outcome.errors;
        fs::remove(path("printed"));
        EXPECT_EQ(std::distance(fs::directory_iterator(m_folder), {}), 2) << output;
    }
}

TEST_F(Outputs, MeasurementsAreNeverReplaced) {
    const std::string before = read("b.csv");
    const Outcome outcome = run({"--csv", "b.csv", "a.csv"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.errors.find("--csv would replace b.csv, which holds measurements"),
              std::string::npos)
        << outcome.errors;
    EXPECT_EQ(read("b.csv"), before);
    write("report.csv", "group,function\n");
    EXPECT_EQ(run({"--csv", "report.csv", "a.csv"}).status, 0) << "an older report is";
}

} // namespace

} // namespace report
