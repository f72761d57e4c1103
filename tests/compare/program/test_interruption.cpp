#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include <nlohmann/json.hpp>

#include "program.h"

namespace compare {

namespace {

using Interruption = Program;

// Ends with what a shell shows: the status, or 128 and the signal.
int runInShell(const std::string& folder, const std::string& line) {
    Command command;
    command.program = "/bin/sh";
    command.arguments = {"-c", line};
    command.directory = folder;
    return runCommand(command).status;
}

TEST_F(Interruption, WhatWasMeasuredIsWrittenAndMarked) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        write("base.script", script(1e6));
        write("new.script", script(1e6));
        // The new side's worker of the third pass (its fourth start) interrupts the program.
        write("signal", "#!/bin/sh\ncase \"$*\" in *-fnew*) echo >>" + path("starts") +
                            "; [ $(wc -l <" + path("starts") + ") = 4 ] && kill -" +
                            std::to_string(number) + " $PPID;; esac\nexec " + path("worker") +
                            " \"$@\"\n");
        fs::permissions(m_folder / "signal", fs::perms::owner_all);
        fs::remove(m_folder / "starts");
        const Outcome outcome = run({"--worker", path("signal"), "--time=0.01", "own", "own",
                                     "--new-keys=-fnew", "--json", "out.json"});
        EXPECT_EQ(outcome.status, 128 + number) << outcome.errors;
        EXPECT_NE(outcome.output.find("\nINCOMPLETE: interrupted\n"), std::string::npos)
            << outcome.output;
        const auto json = nlohmann::json::parse(read("out.json"));
        EXPECT_EQ(json["complete"], false);
        EXPECT_EQ(json["cases"].size(), 1u);
        EXPECT_GE(json["cases"][0]["starts"].size(), 1u);
    }
}

TEST_F(Interruption, CtrlCIsAnsweredOnATerminal) {
    write("base.script", script(1e6));
    write("new.script", script(1e6));
    write("signal", "#!/bin/sh\necho >>" + path("starts") + "; [ $(wc -l <" + path("starts") +
                        ") = 6 ] && kill -INT $PPID\nexec " + path("worker") + " \"$@\"\n");
    fs::permissions(m_folder / "signal", fs::perms::owner_all);
    for (const char* quiet : {"", " --quiet"}) {
        fs::remove(m_folder / "starts");
        Command command;
        command.program = "/bin/sh";
        command.arguments = {"-c", "exec " NTK_COMPARE_FILE " --worker " + path("signal") +
                                       " own own --new-keys=-fnew 2>&1 >/dev/null" + quiet};
        command.directory = m_folder.string();
        command.console = Console::terminal;
        const std::string shown = runCommand(command).output;
        const bool isSaid =
            shown.find("\rEnding after this turn; Ctrl-C again ends at once ") != std::string::npos;
        EXPECT_EQ(isSaid, *quiet == '\0') << shown;
    }
}

// The second signal, unless it comes so soon that it is the first one's echo.
TEST_F(Interruption, TheSecondSignalEndsAtOnce) {
    write("base.script", script(1e6, "at turn1 hang\n"));
    write("new.script", script(1e6, "at turn1 hang\n"));
    write("signal", "#!/bin/sh\n(sleep 0.5; kill -INT $PPID; sleep 0.7; kill -INT $PPID) "
                    "</dev/null >/dev/null 2>&1 3<&- 4>&- &\nexec " +
                        path("worker") + " \"$@\"\n");
    fs::permissions(m_folder / "signal", fs::perms::owner_all);
    const Outcome outcome = run({"--worker", path("signal"), "own", "own", "--new-keys=-fnew"});
    EXPECT_EQ(outcome.signal, SIGINT);
    EXPECT_EQ(outcome.output, "");

    write("base.script", script(1e6));
    write("new.script", script(1e6));
    write("twice", "#!/bin/sh\necho >>" + path("starts") + "; [ $(wc -l <" + path("starts") +
                       ") = 6 ] && kill -INT $PPID && sleep 0.1 && kill -INT $PPID\nexec " +
                       path("worker") + " \"$@\"\n");
    fs::permissions(m_folder / "twice", fs::perms::owner_all);
    const Outcome echoed = run({"--worker", path("twice"), "own", "own", "--new-keys=-fnew"});
    EXPECT_EQ(echoed.signal, 0);
    EXPECT_EQ(echoed.status, 128 + SIGINT);
    EXPECT_NE(echoed.output.find("INCOMPLETE"), std::string::npos) << echoed.output;
}

TEST_F(Interruption, ASignalThatTheCallerIgnoresStaysIgnored) {
    write("base.script", script(1e6));
    write("new.script", script(1e6));
    write("signal", "#!/bin/sh\nkill -HUP $PPID\nexec " + path("worker") + " \"$@\"\n");
    fs::permissions(m_folder / "signal", fs::perms::owner_all);
    EXPECT_EQ(runInShell(m_folder.string(), "trap '' HUP; exec " NTK_COMPARE_FILE " --worker " +
                                                path("signal") +
                                                " --time=0.01 own own --new-keys=-fnew"),
              0);
}

} // namespace

} // namespace compare
