// Another build of the measured library in the loader's path, also one that is at fault.
#include "session.h"

namespace {

// The functions that it has.
const Texts itsFunctions = {"-fLZ4", "-fAdler", "-fCRC"};

class OtherLibrary : public SystemTest {
protected:
    Outcome runWithIt(const Texts& keys, const Texts& misbehaviour = {}) const {
        const std::string path = std::string("LD_LIBRARY_PATH=") + NTK_OTHER_LIBRARY_DIRECTORY;
        return runWell(quick + keys + Texts{"-olog.txt", "-rtable.csv", "-usum.csv"},
                       {.directory = corpusDirectory(), .environment = misbehaviour + Texts{path}});
    }
    std::string result(const std::string& function) const {
        return summaryRecords(text("sum.csv"))[function]["Result"];
    }
};

TEST_F(OtherLibrary, TakesThePlaceOfOursWithoutANewBuild) {
    runWithIt(itsFunctions);
    EXPECT_EQ(timesIn(text("log.txt"), " Library  : ntkDC, another build, Jan 31 2024\n"), 1);
    const Table table(text("table.csv"));
    EXPECT_EQ(table.column("Function").size(), 10u);
    EXPECT_EQ(table.column("Result"), std::set<std::string>{"OK"});
    for (const Texts& row : table.rows) {
        if (table.cell(row, "Function") == "ntksEncodeLZ4_8u") {
            EXPECT_EQ(table.cell(row, "Ratio"), "2") << testing::PrintToString(row);
        }
    }
}

TEST_F(OtherLibrary, AFaultEndsItsTestAlone) {
    const std::string faults =
        "OTHER_NTKDC_FAULTS=ntksAdler32_8u ntksCRC32_8u ntksEncodeLZ4HashTableGetSize_8u";
    const Outcome outcome = runWithIt(itsFunctions + Texts{"-s-"}, {faults});
    const std::string said = "--NTK. Signal: Illegal storage access. in ";
    EXPECT_EQ(timesIn(outcome.output, said), 8) << outcome.output;
    EXPECT_EQ(timesIn(outcome.output, said + "ntkFunctionCalls\n"), 2) << outcome.output;
    EXPECT_EQ(timesIn(outcome.output, said + "initData\n"), 6) << outcome.output;
    EXPECT_EQ(closingCount(outcome.output, ".....-EXCPTFAIL"), 8);
    EXPECT_EQ(closingCount(outcome.output, ".Successes"), 2);
    EXPECT_EQ(result("ntksCRC32_8u"), "EXCPTFAIL");
    EXPECT_EQ(result("ntksCRC32C_8u"), "OK");
    const Table table(text("table.csv"));
    EXPECT_EQ(table.column("Function"),
              (std::set<std::string>{"ntksCRC32C_8u", "ntksCRC32_BZ2_8u"}));
    EXPECT_EQ(table.rows.size(), 10u);
}

TEST_F(OtherLibrary, AnErrorStatusIsNamedAndCosts) {
    const Outcome outcome = runWithIt({"-fCRC32"}, {"OTHER_NTKDC_ERRORS=ntksCRC32C_8u"});
    EXPECT_EQ(timesIn(outcome.output, "--NTK FAIL. status = -7 in ntksCRC32C_8u: "), 1)
        << outcome.output;
    EXPECT_EQ(result("ntksCRC32C_8u"), "FUNCFAIL");
    EXPECT_EQ(result("ntksCRC32_8u"), "OK");
    EXPECT_EQ(closingCount(outcome.output, ".....-FAIL"), 1);
    const Table table(text("table.csv"));
    EXPECT_EQ(table.rows.size(), 11u);
    for (const Texts& row : table.rows) {
        const bool failed = table.cell(row, "Function") == "ntksCRC32C_8u";
        EXPECT_EQ(row.size(), table.names.size());
        EXPECT_EQ(table.cell(row, "Result"), failed ? "FUNCFAIL" : "OK");
        EXPECT_EQ(table.cell(row, "Clocks") == "-", failed);
    }
}

TEST_F(OtherLibrary, AnImpossibleLengthIsAFailure) {
    for (const char* const length : {"0", "-1", "-1000000", "1000000"}) {
        const Outcome outcome = runWithIt({"-fLZ4"}, {std::string("OTHER_NTKDC_LENGTH=") + length});
        const std::string said = std::string("--NTK FAIL. destination length = ") + length + " in ";
        EXPECT_EQ(timesIn(outcome.output, said), 6) << outcome.output;
        EXPECT_EQ(timesIn(outcome.output, said + "ntksEncodeLZ4HC_8u: not within 1 to "), 1);
        EXPECT_EQ(closingCount(outcome.output, ".....-FAIL"), 6);
        const Table table(text("table.csv"));
        EXPECT_EQ(table.column("Result"), std::set<std::string>{"FUNCFAIL"});
        EXPECT_EQ(table.column("Ratio"), std::set<std::string>{"-"});
        EXPECT_EQ(table.column("Clocks"), std::set<std::string>{"-"});
        EXPECT_EQ(result("ntksDecodeLZ4_8u"), "FUNCFAIL"); // of its input
    }
}

// A build that takes the locale of its user, in which numbers have a comma, where cells end.
TEST_F(OtherLibrary, ItsLocaleChangesNoNumber) {
    write("comma.src", "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3\n"
                       "END LC_NUMERIC\n");
    runCommand({.program = "/usr/bin/localedef",
                .arguments = {"-c", "-i", path("comma.src"), path("comma")},
                .input = ""});
    const Texts keys = {"-f=ntksEncodeLZ4_8u",
                        "-f=ntksDecodeLZ4_8u",
                        "-dAccuracy=2.5",
                        "-LDATA",
                        "-dCodeLength=1001",
                        "-dCodeFile=obj1",
                        "-s-"};
    runWithIt(keys);
    const std::string plain = text("table.csv");
    runWithIt(keys, {"OTHER_NTKDC_LOCALE=comma", "LOCPATH=" + directory()});
    const Table table(text("table.csv"));
    ASSERT_EQ(table.rows.size(), 2u);
    for (size_t i = 0; i < table.rows.size(); ++i) {
        SCOPED_TRACE(testing::PrintToString(table.rows[i]));
        EXPECT_EQ(table.rows[i].size(), table.names.size());
        EXPECT_EQ(table.cell(table.rows[i], "Ratio"),
                  Table(plain).cell(Table(plain).rows[i], "Ratio"));
        EXPECT_NE(table.cell(table.rows[i], "Clocks").find('.'), std::string::npos);
    }
}

} // namespace
