#include <csignal>

#include <nlohmann/json.hpp>

#include "program.h"

namespace compare {

namespace {

class Interruption : public Program {
protected:
    // The worker, which first does what the shell script says.
    std::string workerThat(const std::string& shellScript) const {
        return writeProgram("signal", shellScript + "\nexec " + path("worker") + " \"$@\"\n");
    }
    // For a script: whether it runs for so many workers already, this one included.
    std::string isStart(int number) const {
        return "echo >>" + path("starts") + "; [ $(wc -l <" + path("starts") +
               ") = " + std::to_string(number) + " ]";
    }
    // The new side's worker interrupts the program in the course of its start of that number.
    std::string interruptingWorker(int start, int signal) const {
        fs::remove(m_folder / "starts");
        return workerThat("case \"$*\" in *-fnew*) " + isStart(start) + " && kill -" +
                          std::to_string(signal) + " $PPID;; esac");
    }
    Outcome runInShell(const std::string& line, Console console = Console::read) const {
        return runCommand({.program = "/bin/sh",
                           .arguments = {"-c", line},
                           .directory = m_folder.string(),
                           .console = console});
    }
};

TEST_F(Interruption, WhatWasMeasuredIsWrittenAndMarked) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const Outcome outcome =
            run({"--worker", interruptingWorker(4, number), "--time=0.01", "own", "own",
                 "--new-keys=-fnew", "--json", "out.json"}); // in pass 3
        EXPECT_EQ(outcome.status, 128 + number) << outcome.errors;
        EXPECT_TRUE(has(outcome.output, "\nINCOMPLETE: interrupted\n"));
        const auto json = nlohmann::json::parse(read("out.json"));
        EXPECT_EQ(json["complete"], false);
        EXPECT_EQ(json["cases"].size(), 1u);
        EXPECT_GE(json["cases"][0]["starts"].size(), 1u);
    }
}

TEST_F(Interruption, CtrlCIsAnsweredOnATerminal) {
    const std::string worker = workerThat(isStart(6) + " && kill -INT $PPID");
    for (const std::string quiet : {"", " --quiet"}) {
        fs::remove(m_folder / "starts");
        const std::string shown =
            runInShell("exec " NTK_COMPARE_FILE " --worker " + worker +
                           " own own --new-keys=-fnew 2>&1 >/dev/null" + quiet,
                       Console::terminal)
                .output;
        const bool isSaid =
            shown.find("\rEnding after this turn; Ctrl-C again ends at once ") != std::string::npos;
        EXPECT_EQ(isSaid, quiet.empty()) << shown;
    }
}

// In pass 1, and when the cases are listed.
TEST_F(Interruption, EndsACallThatHangs) {
    play(script(1e6, "start2 at turn1 hang\n"), script(1e6, "start2 at turn1 hang\n"));
    Outcome outcome = run({"--worker", interruptingWorker(2, SIGINT), "own", "own", "--patience=1h",
                           "--new-keys=-fnew", "--json", "out.json"});
    EXPECT_EQ(outcome.status, 128 + SIGINT) << outcome.errors;
    EXPECT_TRUE(has(outcome.output, "\nINCOMPLETE: interrupted\n"));
    EXPECT_EQ(nlohmann::json::parse(read("out.json"))["cases"][0]["stop"], "interrupted");

    play(script(1e6), "at hello hang\n");
    outcome = run({"--worker", interruptingWorker(1, SIGTERM), "own", "own", "--patience=1h",
                   "--new-keys=-fnew"});
    EXPECT_EQ(outcome.status, 128 + SIGTERM);
    EXPECT_TRUE(has(outcome.errors, "nothing was measured: interrupted before the cases"));
}

// The second signal, unless it comes so soon that it is the first one's echo.
TEST_F(Interruption, TheSecondSignalEndsAtOnce) {
    play(script(1e6, "at turn1 hang\n"), script(1e6, "at turn1 hang\n"));
    const std::string patient =
        workerThat("(sleep 0.5; kill -INT $PPID; sleep 0.7; kill -INT $PPID) </dev/null "
                   ">/dev/null 2>&1 3<&- 4>&- &");
    const Outcome outcome =
        run({"--worker", patient, "--hurry=1h", "own", "own", "--new-keys=-fnew"});
    EXPECT_EQ(outcome.signal, SIGINT);
    EXPECT_EQ(outcome.output, "");

    play(script(1e6), script(1e6));
    const std::string hasty =
        workerThat(isStart(6) + " && kill -INT $PPID && sleep 0.1 && kill -INT $PPID");
    const Outcome echoed = run({"--worker", hasty, "own", "own", "--new-keys=-fnew"});
    EXPECT_EQ(echoed.signal, 0);
    EXPECT_EQ(echoed.status, 128 + SIGINT);
    EXPECT_TRUE(has(echoed.output, "INCOMPLETE"));
}

TEST_F(Interruption, ASignalThatTheCallerIgnoresStaysIgnored) {
    const std::string worker = workerThat("kill -HUP $PPID");
    EXPECT_EQ(runInShell("trap '' HUP; exec " NTK_COMPARE_FILE " --worker " + worker +
                         " --time=0.01 own own --new-keys=-fnew")
                  .status,
              0);
}

} // namespace

} // namespace compare
