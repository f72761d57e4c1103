// ntkperf under the watch of ntkguard, with a library that does what no library should.
#include "guarded.h"

namespace {

class GuardOfLibrary : public GuardTest {
protected:
    Outcome runWith(const std::string& deeds, const Texts& keys) const {
        return runWithDeeds(deeds, Texts{"--limit", "2", NTK_PERF_FILE} + quick + keys + keysIn(""),
                            {.program = NTK_GUARD_FILE});
    }
};

TEST_F(GuardOfLibrary, WhatCannotBeSurvivedCostsOneTest) {
    const struct {
        const char *deed, *word, *log;
    } cases[] = {
        {"exit 3", "exit 3", "--NTK. Exception: exit with status 3 in ntkFunctionCalls\n"},
        {"signal 9", "SIGKILL", "--NTK. Signal: Killed (SIGKILL). in ntkFunctionCalls\n"},
        {"hang", "no answer", "--NTK. Exception: no answer for 2 s in ntkFunctionCalls\n"},
        {"thread-segv", "SIGSEGV",
         "--NTK. Signal: Segmentation fault (SIGSEGV). in ntkFunctionCalls\n"},
#if !defined(__SANITIZE_ADDRESS__) // which tells of a destroyed heap itself
        {"heap", "SIGABRT", "--NTK. Signal: Aborted (SIGABRT). in ntkFunctionCalls\n"},
#endif
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.deed);
        const Outcome outcome =
            runWith(std::string("ntksCRC32_8u if 2 65536 ") + c.deed, {"-fCRC"});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(closingCount(outcome.output, ".Number of tests"), 3);
        EXPECT_EQ(closingCount(outcome.output, ".Successes"), 2);
        EXPECT_EQ(closingCount(outcome.output, ".....-EXCPTFAIL"), 1);
        EXPECT_EQ(summaryRecords(text("sum.csv"))["ntksCRC32_8u"]["Result"], "EXCPTFAIL");
        EXPECT_TRUE(hasOnce(text("table.csv"),
                            std::string("\nntksCRC32_8u,8u,65536,-,-,-,-,e,-,EXCPTFAIL,") + c.word +
                                ",-\n"));
        EXPECT_EQ(Table(text("table.csv")).rows.size(), 13u); // five, two and the lost one, five
        EXPECT_TRUE(hasOnce(text("log.txt"), c.log));
        EXPECT_EQ(timesIn(text("log.txt"), "ntksCRC32_8u: CodeLength=65536 \n"), 2);
        EXPECT_TRUE(hasOnce(text("log.txt"), "Processor:"));
    }
}

// The cells that tell combinations apart are there before the first call, and figures that only a
// call can tell are not.
TEST_F(GuardOfLibrary, TheLineHasTheKeysOfTheCombination) {
    const Outcome outcome =
        runWith("ntksEncodeLZ4Dict_8u signal 9; ntksDecodeLZ4_8u at 2 hang",
                {"-fLZ4", "-dCodeFile=obj1;pic", "-dCodeLength=65536", "-ddict=I"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(hasOnce(text("table.csv"),
                        "\nntksEncodeLZ4Dict_8u,8u,21504,obj1,I,-,-,e,-,EXCPTFAIL,SIGKILL,-\n"));
    EXPECT_TRUE(hasOnce(text("table.csv"), "\nntksDecodeLZ4_8u,8u,"));
    EXPECT_EQ(closingCount(outcome.output, ".....-EXCPTFAIL"), 2);
    EXPECT_EQ(closingCount(outcome.output, ".Successes"), 4);
}

TEST_F(GuardOfLibrary, RecordsGoOnInTheSameFile) {
    const Outcome outcome = runWith("ntksCRC32_8u if 2 65536 signal 9", {"-fCRC", "-xrun"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    const std::string records = text("run.jsonl");
    const std::pair<const char*, int> cases[] = {
        {"{\"record\":\"run\",", 1},
        {"{\"record\":\"measurement\",", 12}, // five, two, five
        {"{\"record\":\"test\",", 3},
        {"{\"record\":\"test\",\"function\":\"ntksCRC32_8u\",", 1},
        {",\"result\":\"EXCPTFAIL\",\"message\":\"--NTK. Signal: Killed (SIGKILL). in "
         "ntkFunctionCalls\\n-- exception on test parameters:\\nntksCRC32_8u: "
         "CodeLength=65536 \"}\n",
         1},
        {"{\"record\":\"end\",\"tests\":3,\"failed\":1,\"complete\":true,", 1}};
    for (const auto& [begin, times] : cases) {
        EXPECT_EQ(timesIn(records, begin), times) << begin << "\n" << records;
    }
    EXPECT_EQ(linesOf(records).size(), 17u);
}

// The program's line is on the terminal of ntkguard, whose words take its place.
TEST_F(GuardOfLibrary, ProgressGoesOnWhereItWas) {
    const auto runOn = [this](const std::string& deeds, bool onTerminal, Console console) {
        return runWithDeeds(
            deeds, Texts{NTK_PERF_FILE} + quick + Texts{"-fCRC", "-l" + directory()},
            {.program = NTK_GUARD_FILE, .console = console, .errorsOnTerminal = onTerminal});
    };
    const std::string errors = runOn("ntksCRC32_8u signal 9", true, Console::read).errors;
    const std::pair<std::string, int> cases[] = {
        {"\r1/3 ntksCRC32C_8u\r", 1},
        {"\r2/3 ntksCRC32_8u, about 1 s left\r", 1},
        {"\r" + std::string(59, ' ') + "\rntkguard: ", 1},
        {"\r2/3 ntksCRC32_8u\r", 1}, // whose end the successor writes
        {"\r3/3 ntksCRC32_BZ2_8u", 1},
        {" is no program", 0}};
    for (const auto& [part, times] : cases) {
        EXPECT_EQ(timesIn(errors, part), times) << part << errors;
    }
    EXPECT_TRUE(errors.ends_with(" \r")) << errors;
    EXPECT_EQ(runOn("", false, Console::read).errors, "");
    EXPECT_EQ(timesIn(runOn("", true, Console::terminal).output, "\r"), 0);
}

// One signal to both, as from a terminal, is one signal.
TEST_F(GuardOfLibrary, AnInterruptedRunEndsInOrder) {
    const Outcome outcome =
        runWith("ntksCRC32_8u at 3 signal 15; ntksCRC32C_8u signal 9", {"-fCRC"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(hasOnce(outcome.output, " .Incomplete     : ended by SIGTERM\n"));
    EXPECT_TRUE(hasOnce(outcome.output, "PS Summary"));
    EXPECT_EQ(closingCount(outcome.output, ".....-EXCPTFAIL"), 2);
    EXPECT_TRUE(hasOnce(outcome.errors, "going on"));
    EXPECT_NE(text("done.end"), "");
}

} // namespace
