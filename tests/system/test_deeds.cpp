// What a library does that no library should, and what of a run survives it: each function of a
// build in the loader's path does a deed on demand (deeds/deeds.cpp).
#include <csignal>

#include "../patterns.h"
#include "session.h"

namespace {

class Deeds : public SystemTest {
protected:
    Outcome runWith(const std::string& deeds, const Texts& keys) const {
        return runWithDeeds(deeds, quick + keys + outputs);
    }
    Outcome runWithLibrary(const std::string& directory, const Texts& keys) const {
        return run(quick + keys + outputs, {.directory = corpusDirectory(),
                                            .environment = {"LD_LIBRARY_PATH=" + directory}});
    }
    const Texts outputs = {"-olog.txt", "-rtable.csv", "-usum.csv", "-gdone.end"};
};

TEST_F(Deeds, MissingFunctionsAreNamedAndFailTheirTestsAlone) {
    const Outcome outcome = runWithLibrary(NTK_OLDER_LIBRARY_DIRECTORY, {"-fCRC", "-fLZ4"});
    EXPECT_EQ(outcome.status, 0) << "signal " << outcome.signal << outcome.errors;
    const std::string file = std::string(NTK_OLDER_LIBRARY_DIRECTORY) + "/libntkdc.so.12";
    const std::string said = "the library has no function ";
    const std::string beforeTests = outcome.output.substr(0, outcome.output.find("CRC32_8u: "));
    EXPECT_TRUE(hasOnce(beforeTests, "-- " + said + "ntksCRC32C_8u (" + file));
    const struct {
        std::string missing, where;
        int tests;
    } cases[] = {{"ntksCRC32C_8u", "", 1}, {"ntksEncodeLZ4HashTableInit_8u", " in initData", 6}};
    for (const auto& c : cases) {
        int times = 0;
        for (const std::string& line : linesOf(outcome.output)) {
            times += line.starts_with("--NTK FAIL. " + said + c.missing + " (") &&
                     timesIn(line, file) == 1 && line.ends_with(")" + c.where);
        }
        EXPECT_EQ(times, c.tests) << c.missing << outcome.output;
    }
    EXPECT_EQ(result("ntksCRC32C_8u"), "FUNCFAIL");
    EXPECT_EQ(result("ntksDecodeLZ4_8u"), "FUNCFAIL"); // its preparation calls the missing one
    EXPECT_EQ(result("ntksCRC32_8u"), "OK");
    EXPECT_EQ(result("ntksCRC32_BZ2_8u"), "OK");
    EXPECT_EQ(closingCount(outcome.output, ".Successes"), 2);
    EXPECT_EQ(closingCount(outcome.output, ".....-FAIL"), 7);
    EXPECT_NE(text("done.end"), "");
}

// One part of the library calls another one, of which an older build is in the path.
TEST_F(Deeds, APartMayLackWhatAnotherOneCalls) {
    const std::string name = "libntks.so.12";
    const std::string function = std::string("ntksZero_8u") + '\0';
    std::string bytes = readFile(std::string(NTK_LIBRARY_DIRECTORY) + "/" + name);
    const size_t place = bytes.find('\0' + function);
    ASSERT_NE(place, std::string::npos);
    bytes[place + 1] = 'x'; // in the list of its symbols
    write(name, bytes);
    const Outcome outcome = runWithLibrary(directory(), {"-fDecodeLZ4", "-fCRC"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(hasOnce(outcome.output, "--NTK FAIL. the library has no function ntksZero_8u ("));
    EXPECT_EQ(result("ntksDecodeLZ4_8u"), "FUNCFAIL");
    EXPECT_EQ(closingCount(outcome.output, ".Successes"), 3);
}

TEST_F(Deeds, FaultsThatCanBeSurvivedEndTheirTestAlone) {
    const struct {
        const char *deed, *text;
    } cases[] = {{"segv", "Illegal storage access."},
                 {"abort", "Abort (SIGABRT)."},
                 {"assert", "Abort (SIGABRT)."},
                 {"bus", "Bus error (SIGBUS)."},
                 {"trap", "Breakpoint or trap (SIGTRAP)."},
                 {"signal 31", "System call that is not allowed (SIGSYS)."}};
    for (const auto& c : cases) {
        const std::string deeds = std::string("ntksCRC32C_8u ") + c.deed + "; ntksCRC32_8u " +
                                  c.deed + "; ntksEncodeLZ4HashTableInit_8u " + c.deed;
        const Outcome outcome = runWith(deeds, {"-fCRC", "-fDecodeLZ4_8u"});
        EXPECT_EQ(outcome.status, 0) << c.deed << " signal " << outcome.signal;
        const std::string said = std::string("--NTK. Signal: ") + c.text + " in ";
        EXPECT_EQ(timesIn(outcome.output, said + "ntkFunctionCalls\n"), 2)
            << c.deed << outcome.output;
        EXPECT_TRUE(hasOnce(outcome.output, said + "initData\n")) << c.deed;
        EXPECT_EQ(result("ntksCRC32_8u"), "EXCPTFAIL") << c.deed;
        EXPECT_EQ(result("ntksDecodeLZ4_8u"), "EXCPTFAIL") << c.deed;
        EXPECT_EQ(result("ntksCRC32_BZ2_8u"), "OK") << c.deed;
        EXPECT_EQ(Table(text("table.csv")).rows.size(), 5u) << c.deed;
    }
}

// The console has gone on line by line all the time; the log is a file that is buffered.
TEST_F(Deeds, WhatEndsTheProcessLeavesItsCombinationInTheLog) {
    const struct {
        const char* deed;
        int status, signal;
        const char* lastWords; // on the error output, and the end of the log
    } cases[] =
    { {"exit 3", 3, 0, ""},
      {"signal 9", -1, SIGKILL, ""},
      {"thread-segv", -1, SIGSEGV,
       "--NTK. Signal: Illegal storage access. This ends the process, in a thread of the library: "
       "ntksCRC32_8u\n"},
#if !defined(__SANITIZE_ADDRESS__) // which tells of a destroyed heap itself
      {"heap", -1, SIGABRT,
       "--NTK. Signal: Abort (SIGABRT). This ends the process, as memory is destroyed: "
       "ntksCRC32_8u\n"},
#endif
    };
    for (const auto& c : cases) {
        const std::string deeds = std::string("ntksCRC32_8u if 2 65536 ") + c.deed;
        const Outcome outcome = runWith(deeds, {"-fCRC"});
        EXPECT_EQ(outcome.status, c.status) << c.deed;
        EXPECT_EQ(outcome.signal, c.signal) << c.deed;
        EXPECT_TRUE(outcome.errors.ends_with(c.lastWords)) << c.deed << outcome.errors;
        const std::string log = text("log.txt");
        const size_t line = log.rfind("ntksCRC32_8u: CodeLength=65536");
        ASSERT_NE(line, std::string::npos) << c.deed << log;
        if (c.status != 3) { // at an exit the trace of the steps may follow
            EXPECT_EQ(log.substr(log.find('\n', line) + 1), c.lastWords) << c.deed;
        }
        EXPECT_EQ(timesIn(log, "-- performance:\n"), 7) << c.deed; // five and two lengths
    }
}

// Their line comes behind the preparation.
TEST_F(Deeds, WhatEndsTheProcessInAPreparationNamesItsCombination) {
    const std::string prepared = "ntksEncodeLZ4_8u, prepared with CodeLength=16384 CodeFile=obj1\n";
    const std::string faults = "--NTK. Signal: Illegal storage access. This ends the process, in a "
                               "thread of the library: ";
    const std::pair<std::string, std::string> cases[] = {
        {"exit 3", "--NTK. Exception: exit in " + prepared}, {"thread-segv", faults + prepared}};
    for (const auto& [deed, lastWords] : cases) {
        const Outcome outcome =
            runWith("ntksEncodeLZ4HashTableInit_8u at 2 " + deed,
                    {"-f=ntksEncodeLZ4_8u", "-dCodeFile=paper1;obj1", "-dCodeLength=16384"});
        EXPECT_TRUE(outcome.errors.ends_with(lastWords)) << deed << outcome.errors;
        EXPECT_TRUE(text("log.txt").ends_with(lastWords)) << deed << text("log.txt");
        EXPECT_TRUE(hasOnce(text("log.txt"), "prepared with")) << deed;
    }
    const Outcome inACall = runWith("ntksEncodeLZ4_8u at 1 exit 3", {"-f=ntksEncodeLZ4_8u"});
    EXPECT_EQ(timesIn(inACall.errors, "prepared with"), 0);
}

TEST_F(Deeds, HandlersAndMaskAreRenewedBeforeEachTest) {
    for (const std::string deed : {"handlers", "mask"}) {
        const Outcome outcome = runWith(
            "ntksCRC32C_8u " + deed + "; ntksCRC32_8u segv; ntksCRC32_BZ2_8u abort", {"-fCRC"});
        EXPECT_EQ(outcome.status, 0) << deed << " signal " << outcome.signal;
        EXPECT_EQ(result("ntksCRC32C_8u"), "OK") << deed;
        EXPECT_EQ(closingCount(outcome.output, ".....-EXCPTFAIL"), 2) << deed;
    }
}

// Set before the settings are read; in the numbers of logs, of data and of settings, too.
TEST_F(Deeds, ItsLocaleIsNotThatOfSettingsAndLog) {
    makeCommaLocale();
    const Outcome outcome = runWithDeeds(
        "ntkdcGetLibVersion setlocale comma",
        {"-B", "-f=ntksEncodeZfp444_32f", "-LDATA", "-dAccuracy=2.5", "-drate=4", "-olog.txt"},
        {.environment = {"LOCPATH=" + directory()}});
    EXPECT_EQ(outcome.errors, "");
    const std::string log = text("log.txt");
    EXPECT_TRUE(hasOnce(log, "Accuracy = 2.5\n"));
    EXPECT_EQ(timesIn(log, "rejected"), 0);
    EXPECT_GE(timesIn(log, " 0."), 1000) << "the data are there";
    for (const std::string& line : linesOf(log)) {
        EXPECT_FALSE(fits(line, "[0-9],[0-9]")) << line;
    }
}

TEST_F(Deeds, AnInterruptionEndsTheRunWithAllThatIsWrittenAtItsEnd) {
    const std::pair<int, const char*> cases[] = {
        {SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};
    for (const auto& [code, name] : cases) {
        const Outcome outcome =
            runWith("ntksCRC32_8u at 3 signal " + std::to_string(code), {"-fCRC"});
        EXPECT_EQ(outcome.status, 0) << name << " signal " << outcome.signal;
        EXPECT_EQ(outcome.errors, "") << name;
        const std::string said =
            std::string("--NTK. Signal: Interrupted by ") + name + ". in loopData\n";
        EXPECT_TRUE(hasOnce(outcome.output, said));
        EXPECT_TRUE(hasOnce(outcome.output, std::string(" .Incomplete     : ended by ") + name));
        EXPECT_TRUE(hasOnce(text("sum.csv"), std::string(".Incomplete     ,ended by ") + name));
        EXPECT_EQ(result("ntksCRC32C_8u"), "OK");
        EXPECT_EQ(result("ntksCRC32_8u"), "EXCPTFAIL");
        EXPECT_EQ(result("ntksCRC32_BZ2_8u"), ""); // was not begun
        EXPECT_EQ(Table(text("table.csv")).rows.size(), 7u) << "two of the interrupted test";
        EXPECT_NE(text("done.end"), "");
        std::remove(path("done.end").c_str());
    }
}

TEST_F(Deeds, InterruptionsWithinACombinationTwiceAndIgnored) {
    const std::string once = "ntksCRC32_8u at 1 signal 15";
    const Outcome within =
        runWith(once, {crc, "-dMethod=Iterative", "-dStopNumLoops=100000000", "-dNobody=1"});
    EXPECT_EQ(within.status, 0);
    EXPECT_EQ(timesIn(text("log.txt"), "-- performance:\n"), 0) << "a combination goes on";
    EXPECT_TRUE(hasOnce(within.output, " .Incomplete "));
    EXPECT_EQ(timesIn(within.output, "Nobody was set"), 0) << "a test that was left out may ask";

    const Outcome twice = runWith("ntksCRC32_8u signal 15", {crc});
    EXPECT_EQ(twice.signal, SIGTERM);

    const Outcome ignored =
        run({"-c", "trap '' HUP; exec " NTK_PERF_FILE " -B -dMethod=Manual -dNumLoops=1 " + crc},
            {.program = "/bin/sh",
             .environment = {"LD_LIBRARY_PATH=" NTK_DEEDS_DIRECTORY,
                             "NTK_DEEDS=ntksCRC32_8u signal 1"}});
    EXPECT_EQ(ignored.status, 0);
    EXPECT_EQ(closingCount(ignored.output, ".Successes"), 1) << ignored.output;
    EXPECT_EQ(timesIn(ignored.output, ".Incomplete"), 0);
}

} // namespace
