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
        {"- foo", "- foo: ignored: incorrect option key\n"},
        {"-Z" + longWord, ": ignored: incorrect option key\n"},
        {"-dCodeLength=abc", "Invalid value of CodeLength = abc"},
        {"-dCodeLength=16384;65536;*x", "Invalid step = x"},
        {"-dNumLoops=many", "Invalid value of NumLoops = many"},
        {"-dMethod=Slow", "Invalid value of Method = Slow"},
        {"-dCodeLenth=16384", "-- Parameter CodeLenth was set by -d key but no test asked"},
        {"-dCodeLength", "-dCodeLength: ignored: incorrect parameter setting"},
        {"-TNoSuch", "-TNoSuch: ignored: "},
        {"-T", "-T: ignored: "},
        {"-LLOUD", "-LLOUD: ignored: "},
        {"-j-3", "-j-3: ignored: "},
        {"-f=nothingCalledSo", " .Number of tests: 1\n"},
    };
    for (const auto& c : cases) {
        const std::string key = c.key.substr(0, 20);
        const Outcome outcome = runWell(quick + Texts{crc, c.key, "-rtable.csv"});
        EXPECT_TRUE(has(outcome.output, c.said)) << key;
        EXPECT_EQ(closingCount(outcome.output, ".Successes"), 1) << key;
        EXPECT_EQ(Table(text("table.csv")).rows.size(), 5u) << key;
    }
}

std::set<std::string> namesIn(const std::filesystem::path& directory) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        names.insert(entry.path().filename());
    }
    return names;
}

// No argument, an empty one, one that no file name can be, one that no terminal likes: every key
// answers in the report, and nothing is written where nobody looks for it.
TEST_F(BadInput, EveryKeyAnswersToEveryArgument) {
    const Texts arguments[] = {
        {}, {""}, {std::string(100000, 'x')}, {"\x01\x1b[31m\r\t\n\x7f\xff"}};
    const Texts batches = {"BAdPLJnpl", "ftmkFYHWTSCs", "cjQZ\x7f", "oOrR", "uU", "q", "g"};
    const Texts alone = {"i", "I", "e", "v", "h", "?", "@"};
    const std::filesystem::path programs = std::filesystem::path(NTK_PERF_FILE).parent_path();
    const std::set<std::string> before = namesIn(programs);
    for (const Texts& argument : arguments) {
        const std::string attached = argument.empty() ? "" : argument[0];
        for (const std::string& batch : batches + alone) {
            Texts keys;
            for (const char key : batch) {
                const std::string word = std::string("-") + key;
                keys = keys + (attached.empty() ? Texts{word} + argument : Texts{word + attached});
            }
            const std::string output =
                runWell(keys + Texts{"-f=nothing", "-p" + directory()}, {.input = ""}).output;
            for (const char key : batch) {
                const std::string said = std::string("\n-") + key + attached + ": ";
                EXPECT_TRUE(hasOnce(output, key == '@' ? "-- Can't open file" : said))
                    << key << " " << attached.length();
            }
            const bool isFile = batch.find_first_of("oqu@") != std::string::npos;
            const bool opens = isFile && (attached.length() > 1000 || batch == "@");
            EXPECT_EQ(timesIn(output, fatal), opens) << batch << attached.length();
        }
    }
    EXPECT_EQ(namesIn(programs), before);
}

TEST_F(BadInput, AHundredThousandKeysAreRead) {
    for (const std::string key : {"-A", "-Q", "-kor", "-P"}) {
        std::string text;
        for (int i = 0; i < 100000; ++i) {
            text += key + "\n";
        }
        write("keys.txt", text);
        const Outcome outcome = runWell({"-B", "-f=nothing", "-@" + path("keys.txt")});
        EXPECT_EQ(timesIn(outcome.output, "\n" + key + ": "), 100000);
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
        EXPECT_TRUE(
            hasOnce(outcome.output, "-- Can't open file " + c.file + " to " + c.use + "\n"));
        EXPECT_TRUE(outcome.output.ends_with(fatal)) << outcome.output;
    }
    const Outcome settings = runWell(quick + Texts{crc, "-I/no such directory/x.ini"});
    EXPECT_TRUE(settings.output.ends_with("FATAL FAIL: can't open ini-file for writing\n"));
    const Outcome unread = runWell(quick + Texts{crc, "-i/no such directory/x.ini"});
    EXPECT_EQ(closingCount(unread.output, ".Successes"), 1) << unread.output;
}

} // namespace
