// What a library does that no library should, and what of a run survives it: each function of a
// build in the loader's path does a deed on demand (deeds/deeds.cpp).
#include "session.h"

namespace {

class Deeds : public SystemTest {
protected:
    Outcome runWith(const std::string& deeds, const Texts& keys,
                    const std::string& library = NTK_DEEDS_DIRECTORY) const {
        return run(quick + keys + Texts{"-olog.txt", "-rtable.csv", "-usum.csv", "-gdone.end"},
                   {.directory = corpusDirectory(),
                    .environment = {"LD_LIBRARY_PATH=" + library, "NTK_DEEDS=" + deeds}});
    }
    std::string result(const std::string& function) const {
        return summaryRecords(text("sum.csv"))[function]["Result"];
    }
};

TEST_F(Deeds, WithoutOneTheLibraryIsTheRealOne) {
    const Outcome outcome = runWith("", {"-fCRC", "-fLZ4"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(closingCount(outcome.output, ".Successes"), 9);
    EXPECT_EQ(timesIn(outcome.output, "the library has no function"), 0);
}

TEST_F(Deeds, MissingFunctionsAreNamedAndFailTheirTestsAlone) {
    const Outcome outcome = runWith("", {"-fCRC", "-fLZ4"}, NTK_OLDER_LIBRARY_DIRECTORY);
    EXPECT_EQ(outcome.status, 0) << "signal " << outcome.signal << outcome.errors;
    const std::string file = std::string(NTK_OLDER_LIBRARY_DIRECTORY) + "/libntkdc.so.12";
    const std::string said = "the library has no function ";
    const std::string beforeTests = outcome.output.substr(0, outcome.output.find("CRC32_8u: "));
    EXPECT_EQ(timesIn(beforeTests, "-- " + said + "ntksCRC32C_8u (" + file), 1) << beforeTests;
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

} // namespace
