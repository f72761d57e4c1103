// A process answers, ends or is silent in many ways; whatever it does, it is told and it is gone.
#include <cerrno>
#include <csignal>
#include <ctime>

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include "process.h"

namespace compare {
namespace {

constexpr double ample = 20;

Command shell(const std::string& script) {
    return {"/bin/sh", {"-c", script}, {"PATH=/usr/bin:/bin", "GIVEN=a b"}, -1};
}

std::string answerOf(const Command& command) {
    return Process(command).receive(ample).text;
}

TEST(Process, HearsOrdersAndAnswers) {
    Process process(shell("while read line <&3; do echo \"<$line>\" >&4; done"));
    for (const std::string text : {"one", "two words", ""}) {
        ASSERT_TRUE(process.send(text));
        const Received received = process.receive(ample);
        EXPECT_EQ(received.kind, Received::line);
        EXPECT_EQ(received.text, ("<" + text).append(">"));
        EXPECT_FALSE(process.hasMore());
    }
}

TEST(Process, StartsInAPlaceOfItsOwn) {
    EXPECT_EQ(answerOf(shell("echo $GIVEN $HOME >&4")), "a b");
    EXPECT_EQ(answerOf(shell("read line; echo \"$?$line\" >&4")), "1"); // nobody types
    // Its group is its own, as Ctrl-C ends a group.
    EXPECT_EQ(answerOf(shell("read pid name state parent group rest < /proc/$$/stat;"
                             "test $group = $$ && echo own >&4")),
              "own");
    // Of its files it has the two usual places only, of those of others none.
    const Process one(shell("sleep 100"));
    const Process another(shell("sleep 100"));
    EXPECT_EQ(answerOf(shell("readlink /proc/$$/fd/* | grep -c memfd >&4")), "2");
}

TEST(Process, RunsOnItsProcessor) {
    cpu_set_t allowed;
    sched_getaffinity(0, sizeof allowed, &allowed);
    int last = 0;
    for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu) {
        last = CPU_ISSET(cpu, &allowed) ? cpu : last;
    }
    Command command = shell("grep Cpus_allowed_list /proc/self/status >&4");
    command.cpu = last;
    EXPECT_EQ(answerOf(command), "Cpus_allowed_list:\t" + std::to_string(last));
}

TEST(Process, TellsHowItEnded) {
    const std::pair<const char*, const char*> ends[] = {
        {"exit 0", "ended with status 0"},      {"exit 7", "ended with status 7"},
        {"kill -SEGV $$", "killed by SIGSEGV"}, {"kill -KILL $$", "killed by SIGKILL"},
        {"kill -40 $$", "killed by signal 40"},
    };
    for (const auto& [script, end] : ends) {
        Process process(shell(script));
        EXPECT_EQ(process.receive(ample).kind, Received::closed) << script;
        EXPECT_EQ(process.end(ample), end) << script;
    }
    Process stays(shell("exec 4>&-; sleep 100"));
    EXPECT_EQ(stays.receive(ample).kind, Received::closed);
    EXPECT_EQ(stays.end(0.05), "");
}

TEST(Process, SaysWhatCannotBeExecuted) {
    Process missing({"/no such worker", {}, {}, -1});
    EXPECT_EQ(missing.receive(ample).kind, Received::closed);
    EXPECT_EQ(missing.end(ample), "ended with status 127");
    EXPECT_EQ(missing.lastWords(), "cannot execute /no such worker: No such file or directory");
}

TEST(Process, GivesUpWaitingForALine) {
    Process silent(shell("printf unfinished >&4; sleep 100"));
    EXPECT_EQ(silent.receive(0.1).kind, Received::late);

    Process endless(shell("while :; do printf xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx; done >&4"));
    EXPECT_EQ(endless.receive(ample).kind, Received::tooLong);

    Process hasty(shell("printf 'one\\ntwo\\n' >&4; sleep 100"));
    EXPECT_EQ(hasty.receive(ample).text, "one");
    EXPECT_EQ(hasty.receive(ample).text, "two");
    EXPECT_FALSE(hasty.hasMore());
}

TEST(Process, IsHeardToTheLastLine) {
    Process process(shell("echo one >&4; printf half >&4"));
    EXPECT_EQ(process.end(ample), "ended with status 0");
    EXPECT_EQ(process.receive(ample).text, "one");
    EXPECT_EQ(process.receive(ample).kind, Received::closed);
}

TEST(Process, KeepsItsLastWords) {
    const std::pair<const char*, std::string> cases[] = {
        {"", ""},
        {"echo out; echo err >&2", "out\nerr"},
        {"for i in 1 2 3 4 5 6 7; do echo $i; echo; done; printf ' \\t\\n'", "3\n4\n5\n6\n7"},
        {"printf 'bell \\007 \\033[1m\\n'", "bell ? ?[1m"},
        {"printf 'no end'", "no end"},
        {"printf 'x%.0s' $(seq 1000)", std::string(200, 'x') + "..."},
    };
    for (const auto& [script, words] : cases) {
        Process process(shell(script));
        process.end(ample);
        EXPECT_EQ(process.lastWords(), words) << script;
    }
}

TEST(Process, ForgottenOutputIsNoLastWord) {
    Process process(shell("echo before; echo >&4; read line <&3; echo behind; echo >&4"));
    process.receive(ample);
    EXPECT_EQ(process.lastWords(), "before");
    process.forgetOutput();
    EXPECT_EQ(process.lastWords(), "");
    process.send("");
    process.receive(ample);
    EXPECT_EQ(process.lastWords(), "behind");
}

TEST(Process, IsGoneWithItsObject) {
    pid_t pid = 0;
    {
        Process process(shell("trap '' TERM INT HUP; echo $$ >&4; while :; do sleep 100; done"));
        pid = std::stoi(process.receive(ample).text);
        EXPECT_EQ(kill(pid, 0), 0);
    }
    EXPECT_EQ(kill(pid, 0), -1);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1); // no zombie is left
    EXPECT_EQ(errno, ECHILD);
}

TEST(Process, CannotBeToldAnythingOnceItListensNoMore) {
    const auto before = signal(SIGPIPE, SIG_IGN);
    Process process(shell("exit 0"));
    process.end(ample);
    EXPECT_FALSE(process.send("quit"));
    signal(SIGPIPE, before);
}

} // namespace
} // namespace compare
