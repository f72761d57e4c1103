// Arguments that come from files, and where files go that nobody named.
#include <filesystem>

#include "session.h"

namespace {

namespace fs = std::filesystem;

// A copy of the program elsewhere, as a user may install it. The libraries are found by the
// loader's path.
class SettingsFiles : public SystemTest {
protected:
    SettingsFiles() {
        fs::create_directory(path("installed"));
        fs::create_directory(path("here"));
        fs::copy_file(NTK_PERF_FILE, path("installed/mine"));
    }
    Command installed() const {
        return {.program = path("installed/mine"),
                .directory = path("here"),
                .environment = {std::string("LD_LIBRARY_PATH=") + NTK_LIBRARY_DIRECTORY}};
    }
};

TEST_F(SettingsFiles, ArgumentFilesStandInPlaceOfTheirKey) {
    write("a.arg", "-B;-dMethod=Manual\n\t-dNumLoops=1 -f=ntksAdler32_8u\r\n"
                   "\"-olog with blanks.txt\" -r \"table with blanks.csv\" -@b.arg stray\n");
    write("b.arg", "-Zneverseen");
    write("empty.arg", "");
    const Outcome outcome = runWell({"-f=ntksCRC32_8u", "-@a.arg", "-@", "empty.arg", "-s-"});
    EXPECT_EQ(timesIn(outcome.output, "Zneverseen"), 0) << "a file in a file is not expanded";
    const size_t place = outcome.output.find("-B: batch mode\n");
    EXPECT_LT(outcome.output.find("-f=ntksCRC32_8u: "), place);
    EXPECT_GT(outcome.output.find("-s-: don't sort functions\n"), place);
    EXPECT_EQ(timesIn(text("log with blanks.txt"), " .Successes      : 2\n"), 1);
    EXPECT_EQ(Table(text("table with blanks.csv")).rows.size(), 10u);
}

TEST_F(SettingsFiles, ALineOfAMegabyteIsReadWhole) {
    const std::string keys = "-B -dMethod=Manual -dNumLoops=1 -f=ntksCRC32_8u\n";
    const int count = 1 << 16;
    std::string many;
    for (int i = 0; i < count; ++i) {
        many += "-Zsomething123; ";
    }
    write("long.arg", keys + "-Z" + std::string(1 << 20, 'x') + " -fAdler\n");
    write("many.arg", keys + many + " -fAdler");
    const Outcome longWord = runWell({"-@long.arg"});
    EXPECT_EQ(closingCount(longWord.output, ".Successes"), 2);
    const Outcome manyWords = runWell({"-@many.arg"});
    EXPECT_EQ(closingCount(manyWords.output, ".Successes"), 2);
    EXPECT_LT(manyWords.wallSeconds, 5) << "the cost of a key grows with the number of keys";
    EXPECT_EQ(timesIn(manyWords.output, "-Zsomething123: ignored: incorrect option key\n"), count);
}

// Only where the command line is empty, in the current directory before the program's, and only
// the first line.
TEST_F(SettingsFiles, TheCfgFileIsTheCommandLineOfAProgramWithoutArguments) {
    write("installed/mine.cfg", "-B -f=ntksCRC32_8u -dMethod=Manual -dNumLoops=1\n-Zsecondline\n");
    const std::string file = path("installed/mine.cfg");
    const Outcome own = runWell({}, installed());
    EXPECT_EQ(timesIn(own.output, "Command line options: read from " + file + " file\n-B: "), 1);
    EXPECT_EQ(timesIn(own.output, "secondline"), 0);
    EXPECT_EQ(closingCount(own.output, ".Successes"), 1);

    const Outcome arguments = runWell({"-v"}, installed());
    EXPECT_EQ(timesIn(arguments.output, "read from"), 0);

    write("here/mine.cfg", "-v");
    const Outcome current = runWell({}, installed());
    EXPECT_EQ(timesIn(current.output, "read from mine.cfg file\n-v: "), 1) << current.output;
}

TEST_F(SettingsFiles, NamesNobodyGaveAreMadeOfTheProgramsOwn) {
    const Texts files = {"-o", "-r", "-u", "-q", "-g"};
    const char* const endings[] = {".txt", ".csv", "_sum.csv", "_name.csv", ".end"};
    const struct {
        Texts keys;
        std::string title;
    } cases[] = {{{}, "installed/mine"},
                 {{"-nother"}, "installed/other"},
                 {{"-l" + path("here")}, "here/mine"},
                 {{"-l.", "-nother"}, "installed/other"}};
    for (const auto& c : cases) {
        runWell(quick + Texts{crc} + files + c.keys, installed());
        for (const char* const ending : endings) {
            EXPECT_TRUE(fs::remove(path(c.title + ending))) << c.title << ending;
        }
    }
    EXPECT_TRUE(fs::is_empty(path("here")));
}

} // namespace
