// What ends the process of a run costs one test of it.
#include "guarded.h"

namespace {

// The pieces of a log between the lines, the first one with the title.
Texts blocksOf(const std::string& log) {
    static const std::string line(79, '-');
    Texts blocks;
    size_t begin = 0;
    for (size_t end; (end = log.find(line, begin)) != std::string::npos; begin = end + 1) {
        blocks.push_back(log.substr(begin, end - begin));
    }
    blocks.push_back(log.substr(begin));
    return blocks;
}

// Of test in lines of cells.
Texts linesAbout(const std::string& test, const std::string& table) {
    Texts lines;
    for (const std::string& line : linesOf(table)) {
        if (line.starts_with(test + ",")) {
            lines.push_back(line);
        }
    }
    return lines;
}

class Guard : public GuardTest {
protected:
    void SetUp() override {
        unguarded(all + keysIn(""), {});
        plainLog = withoutTimes(text("log.txt"));
        plainTable = withoutTimes(text("table.csv"));
        plainSummary = withoutTimes(text("sum.csv"));
        ASSERT_EQ(linesAbout("beta", plainTable).size(), 3u) << plainTable;
    }
    // Everything but what is about test, and the counts, is as without a deed.
    void expectRestAsPlain(const std::string& test) const {
        for (const char* const other : {"alpha", "beta", "delta", "gamma"}) {
            if (other != test) {
                EXPECT_EQ(linesAbout(other, withoutTimes(text("table.csv"))),
                          linesAbout(other, plainTable));
                EXPECT_EQ(linesAbout(other, withoutTimes(text("sum.csv"))),
                          linesAbout(other, plainSummary));
            }
        }
        const Texts plain = blocksOf(plainLog);
        const Texts now = blocksOf(withoutTimes(text("log.txt")));
        ASSERT_EQ(now.size(), plain.size()) << text("log.txt");
        for (size_t i = 0; i + 1 < plain.size(); ++i) { // the last one has the counts
            if (plain[i].find(" Function : " + test + "\n") == std::string::npos &&
                plain[i].find("PS Summary") == std::string::npos) {
                EXPECT_EQ(now[i], plain[i]);
            }
        }
        EXPECT_EQ(linesOf(text("table.csv")).front(), linesOf(plainTable).front());
        EXPECT_TRUE(hasOnce(text("table.csv"), "Function,"));
        EXPECT_TRUE(hasOnce(text("sum.csv"), "Function,"));
        EXPECT_TRUE(hasOnce(text("sum.csv"), "END_DATA"));
    }
    std::string blockAbout(const std::string& test) const {
        for (const std::string& block : blocksOf(withoutTimes(text("log.txt")))) {
            if (block.find(" Function : " + test + "\n") != std::string::npos) {
                return block;
            }
        }
        return "";
    }

    std::string plainLog, plainTable, plainSummary;
};

// What the log has of a test that ended its process at the place.
std::string logOfEnd(const std::string& said, const std::string& combination) {
    return said + (combination.empty() ? "" : "-- exception on test parameters:\n" + combination) +
           " Result   : exception, hh:mm:ss\n";
}

TEST_F(Guard, WhatEndsTheProcessCostsOneTest) {
    const std::string none = "--No measurements have been done\n";
    const struct {
        std::string test, place, deed;
        size_t rows; // that were measured before
        std::string lastRow, log;
    } cases[] = {
        {"alpha", "65536@call", "kill", 0, "alpha,-,65536,-,byte,-,EXCPTFAIL,SIGKILL,-",
         "alpha: Length=65536 Own_alpha=7 \n" +
             logOfEnd("--NTK. Signal: Killed (SIGKILL). in ntkFunctionCalls\n",
                      "alpha: Length=65536 Own_alpha=7 \n") +
             none},
        {"beta", "262144@call", "exit", 1, "beta,-,262144,-,byte,-,EXCPTFAIL,exit 3,-",
         "beta: Length=262144 Own_beta=7 \n" +
             logOfEnd("--NTK. Exception: exit with status 3 in ntkFunctionCalls\n",
                      "beta: Length=262144 Own_beta=7 \n")},
        {"beta", "1048576@release", "_exit", 3,
         "beta,-,-,-,byte,-,EXCPTFAIL,exit 0 in flushData at Length=1048576 Own_beta=7,-",
         logOfEnd("--NTK. Exception: exit with status 0 in flushData\n",
                  "beta: Length=1048576 Own_beta=7 \n")},
        {"gamma", "1048576@prepare", "quit", 2,
         "gamma,-,-,-,byte,-,EXCPTFAIL,SIGQUIT in initData at Length=1048576 Own_gamma=7,-",
         logOfEnd("--NTK. Signal: Quit (SIGQUIT). in initData\n",
                  "gamma: Length=1048576 Own_gamma=7 \n")},
        {"gamma", "0@start", "hang", 0, "gamma,-,-,-,byte,-,EXCPTFAIL,no answer in canStart,-",
         logOfEnd(" Start    : now\n--NTK. Exception: no answer for 1 s in canStart\n", "") + none},
        {"delta", "65536@call", "hang", 0, "delta,-,65536,-,byte,-,EXCPTFAIL,no answer,-",
         logOfEnd("--NTK. Exception: no answer for 1 s in ntkFunctionCalls\n",
                  "delta: Length=65536 Own_delta=7 \n") +
             none},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.test + "@" + c.place + "=" + c.deed);
        std::remove(path("done.end").c_str());
        const Outcome outcome =
            guarded(c.test + "@" + c.place + "=" + c.deed, all + keysIn(""), {"--limit", "1"});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(hasOnce(outcome.errors, "ntkguard: "));
        EXPECT_TRUE(hasOnce(outcome.errors, " in " + c.test));
        expectRestAsPlain(c.test);
        Texts rows = linesAbout(c.test, plainTable);
        rows.resize(c.rows);
        EXPECT_EQ(linesAbout(c.test, text("table.csv")), rows + Texts{c.lastRow});
        const Texts record = linesAbout(c.test, text("sum.csv"));
        ASSERT_EQ(record.size(), 1u);
        EXPECT_TRUE(hasOnce(record.front(), c.test + ",DeedTest,-,-,-,-," + c.test));
        EXPECT_TRUE(hasOnce(record.front(), ",deeds,EXCPTFAIL,"));
        EXPECT_TRUE(has(blockAbout(c.test), c.log));
        EXPECT_EQ(closingCount(outcome.output, ".Number of tests"), 4);
        EXPECT_EQ(closingCount(outcome.output, ".Successes"), 3);
        EXPECT_EQ(closingCount(outcome.output, ".....-EXCPTFAIL"), 1);
        EXPECT_NE(text("done.end"), "");
    }
}

TEST_F(Guard, EveryTestMayEndAProcess) {
    const Outcome outcome = guarded("alpha@1048576@call=kill;beta@0@start=exit;"
                                    "delta@65536@call=hang;gamma@262144@release=quit",
                                    all + keysIn(""), {"--limit", "1"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(timesIn(outcome.errors, "going on behind it\n"), 4) << outcome.errors;
    EXPECT_EQ(closingCount(outcome.output, ".Number of tests"), 4);
    EXPECT_EQ(closingCount(outcome.output, ".....-EXCPTFAIL"), 4);
    EXPECT_EQ(timesIn(text("log.txt"), " Function : "), 4);
    EXPECT_EQ(timesIn(text("table.csv"), "EXCPTFAIL"), 4);
    EXPECT_EQ(timesIn(text("table.csv"), ",OK,"), 4); // alpha's first two, gamma's
    EXPECT_TRUE(hasOnce(text("table.csv"), "Processor,"));
    EXPECT_TRUE(hasOnce(text("log.txt"), "Processor:"));
    // The console is as the log, but for what comes before the log is opened.
    EXPECT_EQ(outcome.output.substr(outcome.output.size() - text("log.txt").size()),
              text("log.txt"));
}

// ntkperf, too: the same bytes, with and without.
TEST_F(Guard, AQuietRunIsAsWithoutIt) {
    const Texts own = {"-dOwn_alpha=3", "-dNobody=1", "-LINFO"};
    const Outcome plain = unguarded(all + keysIn("") + own);
    const std::string files = text("log.txt") + text("table.csv") + text("sum.csv");
    const Outcome outcome = guarded("", all + keysIn("") + own);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(withoutTimes(outcome.output), withoutTimes(plain.output));
    EXPECT_EQ(withoutTimes(text("log.txt") + text("table.csv") + text("sum.csv")),
              withoutTimes(files));
    const Command guard = {.program = NTK_GUARD_FILE};
    for (const char* const key : {"-h", "-v", "-e-"}) {
        EXPECT_EQ(withoutTimes(runWell({NTK_PERF_FILE, key}, guard).output),
                  withoutTimes(runWell({key}, {.program = NTK_PERF_FILE}).output));
    }
}

// What the first process learned of the settings counts at the end.
TEST_F(Guard, SettingsAreJudgedForAllProcesses) {
    write("own.ini", "[alpha]\nOwn_alpha = 1\nStray = 1\n[beta]\nOwn_beta = 2\n[nobody]\nX = 1\n");
    const Texts keys =
        all + keysIn("") +
        Texts{"-i" + path("own.ini"), "-dOwn_alpha=abc", "-dNobody=1", "-dOwn_beta=5", "-Zz"};
    const auto closing = [this] {
        const std::string log = text("log.txt");
        const size_t last = log.rfind(" Result   : ");
        return withoutTimes(log.substr(last, log.rfind(".Number of tests") - last));
    };
    unguarded(keys);
    const std::string plain = closing();
    EXPECT_TRUE(hasOnce(plain, "2 settings were rejected or ignored"));
    EXPECT_EQ(timesIn(plain, "no test asked for it"), 2) << plain;
    guarded("delta@65536@call=kill", keys);
    EXPECT_EQ(closing(), plain);
}

TEST_F(Guard, AnswersAreAskedForOnce) {
    const Texts keys = {"-dMethod=Manual", "-dNumLoops=1", "-f-__", "-AAll"};
    // The accuracy, the lengths (not taken at first), four questions on placement; then for each
    // test its length (the common one) and its own.
    const Command how = {.input = "\nlong\n4096;8192\n\n\n\n\n\n1\n\n2\n\n3\n\n4\n"};
    const Outcome plain = unguarded(keys + keysIn(""), how);
    const std::string table = text("table.csv");
    EXPECT_EQ(timesIn(table, ",4096,"), 4) << table << plain.output;
    const Outcome outcome = guarded("alpha@8192@call=kill", keys + keysIn(""), {}, how);
    EXPECT_EQ(timesIn(outcome.output, "Length ["), timesIn(plain.output, "Length ["));
    EXPECT_EQ(timesIn(outcome.output, "Own_beta=2 \n"), 2) << outcome.output;
    EXPECT_EQ(linesAbout("gamma", text("table.csv")), linesAbout("gamma", table));
    EXPECT_TRUE(hasOnce(text("table.csv"), "alpha,-,8192,-,byte,-,EXCPTFAIL,"));
}

TEST_F(Guard, WhatWasOnStandardErrorIsTold) {
    const Outcome outcome = guarded("beta@65536@call=heap;delta@65536@call=warn;"
                                    "delta@65536@release=kill",
                                    all + keysIn(""));
    EXPECT_TRUE(hasOnce(outcome.errors, "a warning\n"));
    EXPECT_EQ(closingCount(outcome.output, ".....-EXCPTFAIL"), 2);
#if !defined(__SANITIZE_ADDRESS__) // which tells of a destroyed heap in its own words
    EXPECT_TRUE(hasOnce(text("log.txt"), "-- last on standard error: free(): "));
#endif
}

// Between the tests and the end of the process.
TEST_F(Guard, ADeedBehindTheTestsLosesNothing) {
    for (const char* const deed :
         {"all@0@footer=killfirst", "all@0@signal=killfirst", "all@0@exit=kill"}) {
        SCOPED_TRACE(deed);
        std::remove(path("done.end").c_str());
        const Outcome outcome = guarded(deed, all + keysIn(""));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(hasOnce(outcome.errors, "ntkguard: "));
        EXPECT_EQ(withoutTimes(text("log.txt")), plainLog);
        EXPECT_EQ(withoutTimes(text("table.csv")), plainTable);
        EXPECT_EQ(withoutTimes(text("sum.csv")), plainSummary);
        EXPECT_NE(text("done.end"), "");
    }
}

TEST_F(Guard, ItIsNotStartedForEver) {
    const struct {
        const char* deeds;
        int starts; // as told on standard error
        const char* reason;
    } cases[] = {
        {"all@0@begin=exit", 0, "ended with status 3"},
        {"alpha@0@parameters=exit", 0, ", before its first test: it is not started again\n"},
        {"beta@65536@call=kill;all@0@begin=exitlater", 3,
         "3 times without getting on: it is not started again"},
        {"all@0@footer=exit", 3, "3 times without getting on: it is not started again"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = guarded(c.deeds, all + keysIn(""));
        EXPECT_EQ(outcome.status, std::string(c.deeds) == "all@0@begin=exit" ? 3 : 125) << c.deeds;
        EXPECT_EQ(timesIn(outcome.errors, "going on"), c.starts) << outcome.errors;
        EXPECT_TRUE(hasOnce(outcome.errors, c.reason));
    }
}

TEST_F(Guard, CommandLineAndPrograms) {
    write("plain", "no program\n");
    const struct {
        Texts words;
        int status;
        const char* error;
    } cases[] = {
        {{"--help"}, 0, ""},
        {{}, 2, "PROGRAM is required"},
        {{"--limit", "0", "true"}, 2, "--limit"},
        {{"--limit", "soon", "true"}, 2, "--limit"},
        {{"--nonsense", "true"}, 2, "--nonsense"},
        {{"/nowhere/ntkperf"}, 126, "cannot start /nowhere/ntkperf: No such file"},
        {{path("plain")}, 126, "Permission denied"},
        {{"true"}, 0, "is no program of the harness"},
        {{"false", "--limit"}, 1, "false ended with status 1 and is no program of the harness"},
        {{"--limit", "1", "sleep", "100"}, 137, "no answer for 1 s and was ended, before it began"},
        {{"psdeeds", "-v"}, 0, ""}, // beside ntkguard
    };
    for (const auto& c : cases) {
        const Outcome outcome = run(c.words, {.program = NTK_GUARD_FILE});
        EXPECT_EQ(outcome.status, c.status) << outcome.errors;
        EXPECT_TRUE(has(outcome.errors, c.error));
        EXPECT_EQ(timesIn(outcome.errors, "\n"), *c.error != '\0' ? 1 : 0) << outcome.errors;
    }
    const std::string help = run({"--help"}, {.program = NTK_GUARD_FILE}).output;
    for (const char* const told : {"Usage: ntkguard [OPTION...] PROGRAM [KEY...]\n",
                                   "--limit SECONDS", "Examples:", "Exit status:", "  125  "}) {
        EXPECT_TRUE(hasOnce(help, told));
    }
    for (const char* const key : {"--version", "-V"}) {
        const Outcome version = run({key}, {.program = NTK_GUARD_FILE});
        EXPECT_EQ(version.status, 0);
        EXPECT_EQ(version.output, "ntkguard " NTK_VERSION "\n");
    }
}

} // namespace
