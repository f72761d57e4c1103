// Arguments and parameters that come from files, and where files go that nobody named.
#include <atomic>
#include <filesystem>
#include <thread>

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
    write("a.arg",
          "-B;-dMethod=Manual\n\t-dNumLoops=1 -f=ntksAdler32_8u\r\n"
          "\"-olog with blanks.txt\" -r \"table with blanks.csv\" -@b.arg -@a.arg stray\n");
    write("b.arg", "-Zneverseen");
    write("empty.arg", "");
    const Outcome outcome = runWell({"-f=ntksCRC32_8u", "-@a.arg", "-@", "empty.arg", "-s-"});
    EXPECT_EQ(timesIn(outcome.output, "Zneverseen"), 0) << "a file in a file is not expanded";
    EXPECT_TRUE(hasOnce(outcome.output, "-@a.arg: ignored: -@ key in argument file\n"));
    const size_t place = outcome.output.find("-B: batch mode\n");
    EXPECT_LT(outcome.output.find("-f=ntksCRC32_8u: "), place);
    EXPECT_GT(outcome.output.find("-s-: don't sort functions\n"), place);
    EXPECT_TRUE(hasOnce(text("log with blanks.txt"), " .Successes      : 2\n"));
    EXPECT_EQ(Table(text("table with blanks.csv")).rows.size(), 10u);
}

TEST_F(SettingsFiles, ALineOfAMegabyteIsReadWhole) {
    write("long.arg", "-B -dMethod=Manual -dNumLoops=1 -f=ntksCRC32_8u\n-Z" +
                          std::string(1 << 20, 'x') + " -fAdler\n");
    EXPECT_EQ(closingCount(runWell({"-@long.arg"}).output, ".Successes"), 2);
}

// Only where the command line is empty, in the current directory before the program's, and only
// the first line.
TEST_F(SettingsFiles, TheCfgFileIsTheCommandLineOfAProgramWithoutArguments) {
    write("installed/mine.cfg", "-B -f=ntksCRC32_8u -dMethod=Manual -dNumLoops=1\n-Zsecondline\n");
    const std::string file = path("installed/mine.cfg");
    const Outcome own = runWell({}, installed());
    EXPECT_TRUE(hasOnce(own.output, "Command line options: read from " + file + " file\n-B: "));
    EXPECT_EQ(timesIn(own.output, "secondline"), 0);
    EXPECT_EQ(closingCount(own.output, ".Successes"), 1);

    const Outcome arguments = runWell({"-v"}, installed());
    EXPECT_EQ(timesIn(arguments.output, "read from"), 0);

    write("here/mine.cfg", "-v");
    const Outcome current = runWell({}, installed());
    EXPECT_TRUE(hasOnce(current.output, "read from mine.cfg file\n-v: "));

    const std::string log = "-B -f=nothing -o" + path("here/mine.cfg");
    write("here/mine.cfg", log);
    EXPECT_TRUE(hasOnce(runWell({}, installed()).output, "mine.cfg is already used for command"));
    EXPECT_EQ(text("here/mine.cfg"), log);
}

TEST_F(SettingsFiles, NamesNobodyGaveAreMadeOfTheProgramsOwn) {
    const Texts files = {"-o", "-r", "-u", "-q", "-x", "-g"};
    const char* const endings[] = {".txt", ".csv", "_sum.csv", "_name.csv", ".jsonl", ".end"};
    const std::pair<Texts, std::string> cases[] = {{{}, "installed/mine"},
                                                   {{"-nother"}, "installed/other"},
                                                   {{"-l" + path("here")}, "here/mine"},
                                                   {{"-l.", "-nother"}, "installed/other"}};
    for (const auto& [keys, title] : cases) {
        runWell(quick + Texts{crc} + files + keys, installed());
        for (const char* const ending : endings) {
            EXPECT_TRUE(fs::remove(path(title + ending))) << title << ending;
        }
    }
    EXPECT_TRUE(fs::is_empty(path("here")));
}

// The lines that tell a user what is wrong.
std::string mistakesIn(const std::string& output) {
    std::string mistakes;
    for (const std::string& line : linesOf(output)) {
        if (line.starts_with("-- ") && line != "-- performance:") {
            mistakes += line + "\n";
        }
    }
    return mistakes;
}

// Keys and sections that only this run does not need are no mistakes.
TEST_F(SettingsFiles, NamesThatNothingAsksForAreNamed) {
    const std::string known = "[Perf System]\nNumCalls=1\nHuffLength=7\nCodeFile=x\nCodeLength=64\n"
                              "[ntksEncodeLZ4_8u]\nnonsense=1\n[__psBraskCpu]\n[ntksCRC32_8u]\n";
    const std::string wrong = "early=1\n[Perf System]\nCodeLenght=1\ndict=E\nno line\n"
                              "[ntksCRC32_8u]\nMethod=Manual\nCodeFile=x\nCodeLength=64\n"
                              "[ntksCRC23_8u]\nCodeLength=1\n";
    const std::string file = "ini-file " + path("set.ini");
    const auto unasked = [&](const std::string& name, const std::string& section) {
        return "-- Parameter " + name + " was set in section " + section + " of " + file +
               " but no test asked for it\n";
    };
    const std::string mistakes =
        "-- Parameter early was set before the first section of " + file + " and is not used\n" +
        unasked("CodeLenght", "Perf System") + unasked("dict", "Perf System") +
        unasked("no line", "Perf System") + unasked("Method", "ntksCRC32_8u") +
        unasked("CodeFile", "ntksCRC32_8u") + "-- Section ntksCRC23_8u was found in " + file +
        " but no test has this name\n";
    const struct {
        std::string settings;
        Texts keys;
        std::string mistakes;
    } cases[] = {{known, {}, ""},
                 {known, {"-P"}, ""},
                 {wrong, {}, mistakes},
                 {wrong, {"-LERR"}, ""},
                 {wrong, {"-I" + path("set.ini"), "-dCodeLenght=1"}, mistakes}};
    for (const auto& c : cases) {
        write("set.ini", c.settings);
        const Outcome outcome = runWell(quick + Texts{crc, "-i" + path("set.ini")} + c.keys);
        EXPECT_EQ(mistakesIn(outcome.output), c.mistakes);
        EXPECT_EQ(closingCount(outcome.output, ".Successes"), 1);
    }
}

// The two functions share the parameter CodeLength.
TEST_F(SettingsFiles, ASectionHoldsForItsTestAlone) {
    write("set.ini", "[Perf System]\nCodeLength=32\n[ntksAdler32_8u]\nCodeLength=64;128\n");
    const Texts keys = {"-f=ntksAdler32_8u", crc, "-i" + path("set.ini"), "-rtable.csv"};
    runWell(quick + keys);
    const Table table(text("table.csv"));
    std::string lengths;
    for (const auto& row : table.rows) {
        lengths += table.cell(row, "Function") + " " + table.cell(row, "Length") + "\n";
    }
    EXPECT_EQ(lengths, "ntksAdler32_8u 64\nntksAdler32_8u 128\nntksCRC32_8u 32\n");
    // The same with answers: five questions for the session, then CodeLength for each test.
    const Outcome asked = run({"-A", "-dMethod=Manual", "-dNumLoops=1", "-f=ntksAdler32_8u", crc},
                              {.input = "\n32\n\n\n\n\n64;128\n\n"});
    EXPECT_EQ(timesIn(asked.output, "for CodeLength [32]: "), 2) << asked.output;
    EXPECT_TRUE(hasOnce(asked.output, "\nntksCRC32_8u: CodeLength="));
    // What the file sets for all is not asked for each.
    const Outcome set =
        run(Texts{"-A", "-dMethod=Manual", "-dNumLoops=1"} + keys, {.input = "\n\n\n\n\n\n\n\n"});
    EXPECT_EQ(timesIn(set.output, "for CodeLength ["), 0) << set.output;
}

TEST_F(SettingsFiles, WithPTheSectionsNameTheTests) {
    fs::create_directory(path("folder"));
    write("one.ini", "[ntksCRC32_8u]\n");
    write("other.ini", "[ntksAdler32_8u]\n[Perf System]\n");
    const std::string none = "-- No test is run: -P key ";
    const struct {
        Texts keys;
        std::string said;
        int successes = 0;
    } cases[] = {
        {{"-i" + path("one.ini")}, "", 1},
        {{crc, "-i" + path("one.ini")}, "", 1},
        {{}, none + "needs an ini-file, -i key names it\n"},
        {{"-i" + path("absent.ini")}, none + "can't read ini-file " + path("absent.ini") + "\n"},
        {{"-i" + path("folder")},
         "-- Can't open file " + path("folder") + " to read\n" + none + "can't read ini-file " +
             path("folder") + "\n"},
        {{crc, "-i" + path("other.ini")},
         none + "finds no section of a selected test in ini-file " + path("other.ini") + "\n"},
        {{"-fnone"}, "-- No test meets the conditions, -e key lists all tests\n"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = runWell(quick + Texts{"-P", "-LERR"} + c.keys);
        EXPECT_EQ(mistakesIn(outcome.output), c.said);
        EXPECT_EQ(closingCount(outcome.output, ".Successes"), c.successes);
    }
}

TEST_F(SettingsFiles, AnythingMayBeNamedAsSettings) {
    using namespace std::string_literals;
    std::string thousand;
    for (int i = 0; i < 1000; ++i) {
        thousand += "[section" + std::to_string(i) + "]\nCodeLength=1\n";
    }
    const std::string good = "[ntksCRC32_8u]\nCodeLength=64";
    const struct {
        std::string content, said;
        int times, rows;
    } cases[] = {
        {"", "", 0, 5},
        {good, "", 0, 1}, // without a last line end
        {"\xEF\xBB\xBF[Perf System]\r\nCodeLength=64;128\r\n", "", 0, 2},
        {thousand + good, " but no test has this name\n", 1000, 1},
        {std::string(1 << 20, 'x') + "\n" + good + "\n" + std::string(1 << 20, '='), "Parameter", 2,
         1},
        {good + "\n\0\0=\0[\n\x01\xFF\x1B"s, "but no test asked for it\n", 2, 1},
        {"[Perf System]\nCodeLength=\nCodeLength = 1;x\n", "Invalid value of CodeLength = x", 0, 5},
    };
    for (const auto& c : cases) {
        write("set.ini", c.content);
        const Outcome outcome = runWell(quick + Texts{crc, "-i" + path("set.ini"), "-rtable.csv"});
        EXPECT_EQ(timesIn(mistakesIn(outcome.output), "\n"), c.times);
        EXPECT_TRUE(has(outcome.output, c.said));
        EXPECT_EQ(Table(text("table.csv")).rows.size(), static_cast<size_t>(c.rows));
    }
    const std::pair<std::string, std::string> unread[] = {
        {directory(), "-- Can't open file " + directory() + " to read\n"},
        {"/proc/self/mem", "-- Can't open file /proc/self/mem to read\n"}, // opens, no more
    };
    for (const auto& [file, said] : unread) {
        const Outcome outcome = runWell(quick + Texts{crc, "-i" + file});
        EXPECT_TRUE(hasOnce(outcome.output, said));
        EXPECT_EQ(closingCount(outcome.output, ".Successes"), 1);
    }
}

constexpr const char* commonDefaults =
    "\n[Perf System]\n"
    "Method=Auto\t// Method {Auto|Manual|Statistic|Iterative}\n"
    "Accuracy=5\t// Accuracy, %\n"
    "CodeLength=16384; 262144; *2\t// for CodeLength\n"
    "AlignVectorsBy=byte\t// AlignVectorsBy {byte|element}\n"
    "VectorAlign=0\t// VectorAlign by Byte, 0..63\n"
    "MisalignFirstVectorOnly=yes\t// MisalignFirstVectorOnly {yes|no}\n"
    "MutualVectorShift=512\t// MutualVectorShift in Bytes, divisible by 64\n";
constexpr const char* crcDefaults =
    "\n[ntksCRC32_8u]\nCodeLength=16384; 262144; *2\t// for CodeLength\n";
constexpr const char* adlerDefaults =
    "\n[ntksAdler32_8u]\nCodeLength=16384; 262144; *2\t// for CodeLength\n";

// Nothing is measured, and "-d" has no say.
TEST_F(SettingsFiles, DefaultsAreWritten) {
    const Texts keys = {crc, "-I" + path("set.ini"), "-dCodeLength=1"};
    const Outcome first = runWell(quick + keys);
    EXPECT_EQ(timesIn(first.output, "performance"), 0);
    EXPECT_EQ(text("set.ini"), std::string(commonDefaults) + crcDefaults);

    const std::string own = "stray=1\n\n[other]\nkept\nempty=\n\n[ntksAdler32_8u]\n"
                            "CodeLength=64\t// mine\n";
    write("set.ini", own);
    runWell(quick + keys + Texts{"-f=ntksAdler32_8u"});
    const std::string all = own + commonDefaults + crcDefaults;
    EXPECT_EQ(text("set.ini"), all);
    write("set.ini", "// a comment of its own\n" + all);
    runWell(quick + keys);
    EXPECT_EQ(text("set.ini"), "// a comment of its own\n" + all) << "there was nothing to add";
    EXPECT_EQ(
        closingCount(runWell(quick + Texts{"-i" + path("set.ini")} + keys).output, ".Successes"),
        1);
}

TEST_F(SettingsFiles, AFullDiskLeavesTheOldSettings) {
    const std::string old = "[old]\nx = 1 // of mine\n";
    fs::create_directory(path("set"));
    const std::string file = path("set/set.ini");
    write("set/set.ini", old);
    const Texts keys = quick + Texts{crc, "-I" + file};
    const Outcome full =
        runWell(Texts{"-c", "ulimit -f 0; exec \"$@\"", "sh", NTK_PERF_FILE} + keys,
                {.program = "/bin/sh"});
    EXPECT_TRUE(hasOnce(full.output, "-- Can't write to file " + file + ": File too large\n"));
    EXPECT_EQ(readFile(file), old);
    EXPECT_EQ(std::distance(fs::directory_iterator(path("set")), {}), 1);
    runWell(keys);
    EXPECT_EQ(readFile(file),
              std::string("\n[old]\nx=1\t// of mine\n") + commonDefaults + crcDefaults);
}

TEST_F(SettingsFiles, TwoRunsAtOnceLeaveOneWholeFile) {
    const std::string file = path("set.ini");
    std::string old = "\n[old]\n"; // too long for one write
    for (int i = 0; i < 10000; ++i) {
        old += "key" + std::to_string(i) + "=1\n";
    }
    write("set.ini", old);
    std::atomic<int> writing = 2;
    const auto writeOften = [&](const std::string& function) {
        for (int i = 0; i < 20; ++i) {
            runWell(quick + Texts{function, "-I" + file});
            write(function, old);
            fs::rename(path(function), file);
        }
        --writing;
    };
    std::thread one(writeOften, crc), other(writeOften, "-f=ntksAdler32_8u");
    const std::string common = old + commonDefaults;
    const std::set<std::string> whole = {old, common + crcDefaults, common + adlerDefaults,
                                         common + crcDefaults + adlerDefaults,
                                         common + adlerDefaults + crcDefaults};
    std::set<std::string> seen;
    while (writing) {
        seen.insert(readFile(file));
    }
    one.join();
    other.join();
    for (const std::string& text : seen) {
        EXPECT_EQ(whole.count(text), 1u) << text.length() << " bytes";
    }
    EXPECT_GT(seen.size(), 1u);
}

} // namespace
