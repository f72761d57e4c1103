#include <nlohmann/json.hpp>

#include <algorithm>

#include "program.h"

namespace compare {

namespace {

using Results = Program;
using Json = nlohmann::json;

const std::string longCase =
    "case ntksPlayed_8u LengthOfAllTheBytes=1000 WindowOfTheCoder=32768\nturns 1e6\n";

TEST_F(Results, TheExitStatusIsTheAnswer) {
    const std::string other = "case ntksOther_8u Length=1000\nturns 1e6\n";
    const struct {
        const char* what;
        std::string base, changed;
        int status;
        const char* text;
    } rows[] = {
        {"same", script(1e6), script(1e6), 0, " same"},
        {"slower", script(1e6), script(1.03e6), 1, "+3.00%"},
        {"slower, tolerated", script(1e6), script(1.005e6), 0, "+0.50%"},
        {"fails on new", script(1e6, other), script(1e6, "at turn1 kill 11\n" + other), 1,
         "failed on the new side: killed by SIGSEGV"},
        {"all fail", script(1e6), script(1e6, "at turn1 kill 11\n"), 2,
         "Nothing could be measured"},
        {"other output", script(1e6, "outcome 0 Size=10\n"), script(1e6, "outcome 0 Size=11\n"), 0,
         "outputs differ: Size 10 -> 11"},
        {"only on one side", script(1e6, other), script(1e6), 0,
         "only on the base side: ntksOther_8u Length=1000"},
    };
    for (const auto& row : rows) {
        play(row.base, row.changed);
        const Outcome outcome = run(played());
        EXPECT_EQ(outcome.status, row.status) << row.what << "\n" << outcome.output;
        EXPECT_TRUE(has(outcome.output, row.text)) << row.what << outcome.errors;
        EXPECT_EQ(outcome.errors, "") << "progress in a pipe";
    }
}

TEST_F(Results, WithoutACaseThereIsAMessageAndStatus2) {
    play("", "");
    const Outcome outcome = run(played({"--json", "out.json"}));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors.rfind("ntkcompare: ", 0), 0u) << outcome.errors;
    EXPECT_FALSE(fs::exists(path("out.json")));
}

TEST_F(Results, FilesSayWhatTheTableSays) {
    play(script(1e6), script(1.25e6));
    const Outcome outcome = run(
        played({"--csv", "out.csv", "--json", "out.json", "--markdown", "out.md", "--seed", "7"}));
    EXPECT_EQ(outcome.status, 1) << outcome.errors;
    const Json json = Json::parse(read("out.json"));
    EXPECT_EQ(json["seed"], 7);
    EXPECT_EQ(json["complete"], true);
    EXPECT_EQ(json["settings"]["time"], 0.01);
    EXPECT_EQ(json["base"]["keys"], Json({"-B", "-fbase"}));
    EXPECT_EQ(json["new"]["version"], "1.0 new");
    EXPECT_EQ(json["cases"][0]["verdict"], "slower");
    EXPECT_NEAR(json["cases"][0]["effect"]["ratio"], 1.25, 1e-12);
    EXPECT_EQ(json["cases"][0]["starts"].size(), json["passes"]);
    EXPECT_EQ(read("out.csv").rfind("function,", 0), 0u);
    EXPECT_TRUE(has(read("out.csv"), "\r\nntksPlayed_8u,Length=1000,,1e+06,1250000,"));
    EXPECT_EQ(read("out.md").rfind("**The only decided case is slower by more than 1%.**", 0), 0u);
}

// A reader of the old file must never see half a new one, nor a temporary one stay.
TEST_F(Results, AFileThatCannotBeReplacedAtTheEndIsLeftAndSaid) {
    // Takes the folder away while it is measured: there is no other moment between the check
    // before the run and the writing.
    fs::create_directory(m_folder / "gone");
    write("worker", "#!/bin/sh\nrm -rf " + path("gone") + "\n" + read("worker").substr(10));
    const Outcome outcome = run(played({"--csv", "gone/out.csv", "--markdown", "out.md"}));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(has(outcome.output, "ntksPlayed_8u"));
    EXPECT_TRUE(has(outcome.errors, "cannot write gone/out.csv: "));
    EXPECT_NE(read("out.md"), "");
}

TEST_F(Results, FilesOfARunThatMeasuresNothingAreUntouched) {
    play("at hello exit 3\n", script(1e6));
    write("old.csv", "old");
    const Outcome outcome = run(played({"--csv", "old.csv"}));
    EXPECT_EQ(outcome.status, 2) << outcome.output;
    EXPECT_NE(outcome.errors, "");
    EXPECT_EQ(read("old.csv"), "old");
    const auto left = files();
    EXPECT_TRUE(std::none_of(left.begin(), left.end(), [](const std::string& name) {
        return name.find(".new-") != std::string::npos;
    }));
}

TEST_F(Results, OutputThatIsLostIsStatus2) {
    const Outcome outcome = run(played({"--csv", "out.csv"}), Console::fullDisk);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(has(outcome.errors, "cannot write to standard output: No space left on device"));
    EXPECT_NE(read("out.csv"), "") << "the files do not depend on it";
}

TEST_F(Results, ParametersAreShortenedOnATerminalOnly) {
    play(longCase, longCase);
    const std::string whole = "LengthOfAllTheBytes=1000 WindowOfTheCoder=32768";
    EXPECT_TRUE(has(run(played()).output, whole));
    const Outcome narrow = run(played(), Console::terminal);
    EXPECT_FALSE(has(narrow.output, whole));
    EXPECT_TRUE(has(narrow.output, "  1000 32768  "));
}

// Of 60 columns, which standard error is here and standard output is not.
TEST_F(Results, ProgressIsALineOfTheTerminalAndGoneInTheEnd) {
    play(longCase, longCase);
    for (const bool isQuiet : {false, true}) {
        std::string line = "exec " NTK_COMPARE_FILE;
        for (const std::string& word : played({isQuiet ? "--quiet" : "--precision=0.5"})) {
            line += " " + word;
        }
        const std::string shown = runCommand({.program = "/bin/sh",
                                              .arguments = {"-c", line + " 2>&1 >/dev/null"},
                                              .directory = m_folder.string(),
                                              .console = Console::terminal})
                                      .output;
        if (isQuiet) {
            EXPECT_EQ(shown, "");
            continue;
        }
        EXPECT_TRUE(has(shown, "%, "));
        EXPECT_EQ(shown.find('\n'), std::string::npos) << shown;
        const std::size_t erased = shown.rfind('\r', shown.size() - 2);
        EXPECT_EQ(shown.back(), '\r');
        EXPECT_EQ(shown.find_first_not_of(' ', erased + 1), shown.size() - 1) << shown;
        for (std::size_t at = 0; at < shown.size();) {
            const std::size_t end = std::min(shown.find('\r', at), shown.size());
            EXPECT_LT(end - at, 60u) << shown.substr(at, end - at);
            at = end + 1;
        }
    }
}

TEST_F(Results, SelfEndsWithItsSentence) {
    const Outcome outcome = run({"--worker", path("worker"), "--time=0.01", "--self"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    const std::size_t last = outcome.output.rfind('\n', outcome.output.size() - 2) + 1;
    EXPECT_EQ(outcome.output.rfind("Now, in ", last), last) << outcome.output;
}

} // namespace

} // namespace compare
