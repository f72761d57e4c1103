// Mistakes of a user: each is named, the rest of the run is as without it, the exit status is 0.
#include <filesystem>

#include "session.h"

namespace {

class BadInput : public SystemTest {};

constexpr const char* fatal = "FATAL FAIL: can't open output file for writing\n";

TEST_F(BadInput, IsNamedAndTheRunGoesOn) {
    const std::string longWord(100000, 'x');
    const struct {
        std::string key;
        std::string said;
    } cases[] = {
        {"-Zfoo", "-Zfoo: ignored: incorrect option key\n"},
        {"-Z" + longWord, ": ignored: incorrect option key\n"},
        {"-dCodeLength=abc", "Invalid value of CodeLength = abc"},
        {"-dCodeLength=16384;65536;*x", "Invalid step = x"},
        {"-dNumLoops=many", "Invalid value of NumLoops = many"},
        {"-dMethod=Slow", "Invalid value of Method = Slow"},
        {"-dCodeLenth=16384", "-- Parameter CodeLenth was set by -d key but no test asked"},
        {"-dCodeLength", "-dCodeLength: ignored: incorrect parameter setting"},
        {"-LLOUD", "-LLOUD: ignored: "},
        {"-j-3", "-j-3: ignored: "},
        {"-f=nothingCalledSo", " .Number of tests: 1\n"},
    };
    for (const auto& c : cases) {
        const std::string key = c.key.substr(0, 20);
        const Outcome outcome = runWell(quick + Texts{crc, c.key, "-rtable.csv"});
        EXPECT_NE(outcome.output.find(c.said), std::string::npos) << key;
        EXPECT_EQ(closingCount(outcome.output, ".Successes"), 1) << key;
        EXPECT_EQ(Table(text("table.csv")).rows.size(), 5u) << key;
    }
}

TEST_F(BadInput, StrayWordsAreDropped) {
    const Outcome outcome =
        runWell(Texts{"first", "-"} + quick + Texts{"stray", "words", crc, "more", "-rtable.csv"});
    EXPECT_EQ(Table(text("table.csv")).rows.size(), 5u);
    for (const char* const word : {"first", "words", "more"}) {
        EXPECT_EQ(timesIn(outcome.output, word), 0) << outcome.output;
    }
}

TEST_F(BadInput, FilesThatCannotBeOpenedEndTheSession) {
    std::filesystem::create_directory(path("folder"));
    const struct {
        std::string key;
        std::string file;
        const char* use;
    } cases[] = {{"-@", "no such file", "read"},
                 {"-@", directory(), "read"},
                 {"-o", "/no such directory/x.txt", "write"},
                 {"-O", "/no such directory/x.txt", "write"},
                 {"-r", path("folder"), "write"},
                 {"-u", "/no such directory/x.csv", "write"},
                 {"-q", "/no such directory/x.csv", "write"}};
    for (const auto& c : cases) {
        const Outcome outcome = runWell(quick + Texts{crc, c.key + c.file});
        EXPECT_EQ(timesIn(outcome.output, "-- Can't open file " + c.file + " to " + c.use + "\n"),
                  1)
            << outcome.output;
        EXPECT_TRUE(outcome.output.ends_with(fatal)) << outcome.output;
    }
    const Outcome settings = runWell(quick + Texts{crc, "-I/no such directory/x.ini"});
    EXPECT_TRUE(settings.output.ends_with("FATAL FAIL: can't open ini-file for writing\n"));
    const Outcome unread = runWell(quick + Texts{crc, "-i/no such directory/x.ini"});
    EXPECT_EQ(closingCount(unread.output, ".Successes"), 1) << unread.output;
}

TEST_F(BadInput, ACorpusDirectoryWithoutFilesIsNamedFileByFile) {
    const Outcome outcome = runWell(quick + Texts{"-fLZ4HC", crc, "-rtable.csv", "-usum.csv"});
    // Five lengths and three dictionaries ask for each.
    for (const char* const name : {"bib", "pic", "trans"}) {
        EXPECT_EQ(timesIn(outcome.output, "-- Can't open file " + std::string(name) + " to read\n"),
                  15);
    }
    EXPECT_EQ(timesIn(outcome.output, "-- Fail while initialization of function data\n"), 1);
    EXPECT_EQ(Table(text("table.csv")).column("Function"), std::set<std::string>{"ntksCRC32_8u"});
    auto records = summaryRecords(text("sum.csv"));
    EXPECT_EQ(records["ntksEncodeLZ4HC_8u"]["Result"], "DATAFAIL");
    EXPECT_EQ(records["ntksEncodeLZ4HC_8u"]["Status87"], "-");
    EXPECT_EQ(records["ntksCRC32_8u"]["Result"], "OK");
}

} // namespace
