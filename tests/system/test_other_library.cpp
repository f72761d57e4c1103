// Another build of the measured library in the loader's path, also one that is at fault: it hands
// every call to the real one, but for what is asked of it (deeds/deeds.cpp).
#include "session.h"

namespace {

class OtherLibrary : public SystemTest {
protected:
    Outcome runWith(const std::string& deeds, const Texts& keys, const Command& how = {}) const {
        return expectWell(runWithDeeds(
            deeds, quick + keys + Texts{"-olog.txt", "-rtable.csv", "-usum.csv"}, how));
    }
};

TEST_F(OtherLibrary, TakesThePlaceOfOursWithoutANewBuild) {
    runWith("ntkdcGetLibVersion version another build; ntksEncodeLZ4_8u poke 4 8192",
            {"-f=ntksEncodeLZ4_8u", "-fCRC", "-dCodeLength=16384", "-dCodeFile=obj1"});
    EXPECT_TRUE(hasOnce(text("log.txt"), " Library  : ntkDC, another build, Jan 31 2024\n"));
    const Table table(text("table.csv"));
    EXPECT_EQ(table.rows.size(), 4u);
    EXPECT_EQ(table.column("Result"), std::set<std::string>{"OK"});
    EXPECT_EQ(table.column("Ratio"), (std::set<std::string>{"-", "2"}));
}

TEST_F(OtherLibrary, AnImpossibleLengthIsAFailure) {
    for (const char* const length : {"0", "-1", "-1000000", "1000000"}) {
        std::string deeds;
        for (const char* const function :
             {"ntksEncodeLZ4_8u poke 4 ", "ntksEncodeLZ4Safe_8u poke 4 ",
              "ntksEncodeLZ4Dict_8u poke 5 ", "ntksEncodeLZ4DictSafe_8u poke 5 ",
              "ntksEncodeLZ4HC_8u poke 5 "}) {
            deeds += std::string(function) + length + ";";
        }
        const Outcome outcome = runWith(deeds, {"-fLZ4"});
        const std::string said = std::string("--NTK FAIL. destination length = ") + length + " in ";
        EXPECT_EQ(timesIn(outcome.output, said), 6) << outcome.output;
        EXPECT_TRUE(hasOnce(outcome.output, said + "ntksEncodeLZ4HC_8u: not within 1 to "));
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
    makeCommaLocale();
    const Texts keys = {"-f=ntksEncodeLZ4_8u",
                        "-f=ntksDecodeLZ4_8u",
                        "-dAccuracy=2.5",
                        "-LDATA",
                        "-dCodeLength=1001",
                        "-dCodeFile=obj1",
                        "-s-"};
    runWith("", keys);
    const std::string plain = text("table.csv");
    runWith("ntksEncodeLZ4_8u setlocale comma; ntksDecodeLZ4_8u setlocale comma", keys,
            {.environment = {"LOCPATH=" + directory()}});
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
