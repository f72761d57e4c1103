#include "program.h"

namespace report {

namespace {

using Usage = Program;

TEST_F(Usage, WhatIsWrongIsOneSentence) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "no file is named"},
        {{"--csv", "out"}, "no file is named"},
        {{"--fast", "a.csv"}, "--fast"},
        {{"a.csv", "--csv"}, "--csv"},
        {{"--csv=", "a.csv"}, "--csv= needs the name of a file"},
        {{"broken", "--csv", "./broken"}, "--csv would replace the input broken"},
        {{"a.csv", "--csv=-", "--markdown=-"}, "only one can go to the standard output"},
        {{"a.csv", "--csv", "out", "--markdown", "./out"}, "are the same file; name two"}};
    write("broken", "?\n");
    for (const auto& [arguments, sentence] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << sentence;
        EXPECT_EQ(outcome.output, "") << sentence;
        EXPECT_EQ(outcome.errors.rfind("ntkreport: ", 0), 0u) << outcome.errors;
        EXPECT_NE(outcome.errors.find(sentence), std::string::npos) << outcome.errors;
        EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
        EXPECT_FALSE(fs::exists(path("out"))) << sentence;
    }
}

TEST_F(Usage, HelpAndVersionArePrinted) {
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    EXPECT_EQ(run({"-h"}).output, help.output);
    for (const char* text : {"Usage: ntkreport [OPTION...] FILE...\n", "--html FILE", "--json FILE",
                             "--bmf FILE", "--smaller-is-better FILE", "--benchstat FILE",
                             "--markdown FILE", "--csv FILE", "Examples:", "Exit status:"}) {
        EXPECT_NE(help.output.find(text), std::string::npos) << text;
    }
    const Outcome version = run({"-V"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output.rfind("ntkreport ", 0), 0u);
    EXPECT_EQ(run({"--version"}).output, version.output);
}

TEST_F(Usage, AnEmptyNameIsNoFile) {
    EXPECT_EQ(run({""}).status, 1);
    EXPECT_EQ(run({"a.csv", "--csv", ""}).status, 2);
}

} // namespace

} // namespace report
