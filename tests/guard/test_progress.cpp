// What a program says of itself, and what its successor gets to know.
#include <gtest/gtest.h>

#include <csignal>

#include "libraries.h"
#include "progress.h"

namespace {

using guard::Ending;
using guard::Progress;

TEST(Progress, AnEndingInItsThreeForms) {
    const std::string other = "signal " + std::to_string(SIGRTMIN + 1);
    const struct {
        int status, signal, silentSeconds;
        std::string word, message, inWords;
    } cases[] = {
        {3, 0, 0, "exit 3", "--NTK. Exception: exit with status 3", "ended with status 3"},
        {0, SIGABRT, 0, "SIGABRT", "--NTK. Signal: Aborted (SIGABRT).",
         "was ended by Aborted (SIGABRT)"},
        {0, SIGKILL, 300, "no answer", "--NTK. Exception: no answer for 300 s",
         "gave no answer for 300 s and was ended"},
        {0, SIGRTMIN + 1, 0, other, "--NTK. Signal: " + other + ".", "was ended by " + other},
    };
    for (const auto& c : cases) {
        const Ending ending = {c.status, c.signal, c.silentSeconds, ""};
        EXPECT_EQ(ending.word(), c.word);
        EXPECT_EQ(ending.message(), c.message);
        EXPECT_EQ(ending.inWords(), c.inWords);
    }
}

TEST(Progress, WhereTheRunIsAfterEachWord) {
    const std::string kept = "answer\tA\t1\n";
    const std::string test = "test\tone\t77\n";
    const std::string at = "at\tinitData\tN=1\t0\n";
    const struct {
        std::string said, place, forSuccessor;
        bool hasBegun, isWaiting;
    } steps[] = {
        {"hello\n", "", "", false, false},
        {"hello\nasks\n", "", "", false, true},
        {"keep\tanswer\tA\t1\n", "", kept, false, false},
        {test, "one", test, true, false},
        {test + at, "one in initData, N=1", test + at, true, false},
        {test + at + "asks\n", "one in initData, N=1", test + at, true, true},
        {test + at + "row\tone\t1\n", "one in initData, N=1", test + at + "row\tone\t1\n", true,
         false},
        {test + "keep\tanswer\tA\t1\nat\tflushData\t\t1\n", "one in flushData",
         kept + test + "at\tflushData\t\t1\n", true, false},
        {test + "keep\tresult\t1\n", "", "result\t1\n", true, false},
        {test + "keep\tresult\t1\ntest\ttwo\t78\n", "two", "result\t1\ntest\ttwo\t78\n", true,
         false},
    };
    for (const auto& step : steps) {
        Progress progress;
        progress.newProcess();
        progress.read("3\n" + step.said);
        EXPECT_EQ(progress.place(), step.place) << step.said;
        EXPECT_EQ(progress.forSuccessor(), step.forSuccessor) << step.said;
        EXPECT_EQ(progress.hasBegun(), step.hasBegun) << step.said;
        EXPECT_EQ(progress.hasAdvanced(), step.hasBegun) << step.said;
        EXPECT_EQ(progress.isWaiting(), step.isWaiting) << step.said;
        EXPECT_EQ(progress.isOfHarness(), step.said.starts_with("hello")) << step.said;
        EXPECT_EQ(progress.signalsHeard(), 3);
        EXPECT_FALSE(progress.hasEnded());
    }
}

// A test that is lost stays so until a process has told of it.
TEST(Progress, WhatARunOfSeveralProcessesKeeps) {
    Progress progress;
    const auto process = [&progress](const std::string& said, int status) {
        progress.newProcess();
        EXPECT_FALSE(progress.isOfHarness() || progress.hasEnded() || progress.hasAdvanced());
        progress.read(said);
        progress.ended({status, 0, 0, "e"});
    };
    process("0\nhello\nkeep\tbegun\t7\nkeep\tresult\t1\ntest\tone\t8\n", 3);
    const std::string lost = "begun\t7\nresult\t1\ntest\tone\t8\n"
                             "lost\texit 3\t--NTK. Exception: exit with status 3\te\n";
    EXPECT_EQ(progress.forSuccessor(), lost);
    EXPECT_TRUE(progress.hasAdvanced());
    process("0\nhello\n", 4);
    EXPECT_EQ(progress.forSuccessor(), lost);
    EXPECT_EQ(progress.place(), "one");
    EXPECT_TRUE(progress.hasBegun());
    EXPECT_FALSE(progress.hasAdvanced());
    process("0\nhello\nkeep\tresult\t10\n", 5);
    EXPECT_EQ(progress.forSuccessor(), "begun\t7\nresult\t1\nresult\t10\n");
    EXPECT_TRUE(progress.hasAdvanced());
    process("0\nhello\nend\n", 0);
    EXPECT_TRUE(progress.hasEnded());
}

TEST(Progress, ThePathsThatTheLoaderTried) {
    const std::string text = "  7: find library=liba.so.1 [0]; searching\n"
                             "  7:   trying file=/nowhere/x/glibc-hwcaps/v3/liba.so.1\n"
                             "  7:   trying file=/nowhere/x/tls/liba.so.1\n"
                             "  7:   trying file=/nowhere/x/liba.so.1\n"
                             "  7:   trying file=/nowhere/other/liba.so.1\n"
                             "  7:   trying file=/nowhere/other/libab.so.1\n"
                             "  7:   trying file=/nowhere/x/liba.so.1\n";
    EXPECT_EQ(guard::triedPaths(text, "liba.so.1"),
              (std::vector<std::string>{"/nowhere/x/liba.so.1", "/nowhere/other/liba.so.1"}));
    EXPECT_EQ(guard::verdictOf("/nowhere/x/liba.so.1"), "is not there");
    EXPECT_EQ(guard::verdictOf("/proc/self/exe"), "is there, but cannot be used");
    EXPECT_EQ(guard::verdictOf("/proc/self/cmdline"), "is no library");
}

} // namespace
