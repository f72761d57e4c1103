// Files that more than one uses, and files that nobody fills: nothing in them is lost, and nothing
// waits for ever.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <thread>
#include <utility>

#include "session.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* fatal = "FATAL FAIL: can't open output file for writing\n";
const Texts lz4 = {"-f=ntksEncodeLZ4_8u", "-dCodeLength=1000"};

// A pipe of this name, open at both ends.
class OpenPipe {
public:
    explicit OpenPipe(const std::string& path) {
        mkfifo(path.c_str(), 0600);
        m_file = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    }
    ~OpenPipe() { close(); }
    OpenPipe(const OpenPipe&) = delete;
    OpenPipe& operator=(const OpenPipe&) = delete;

    void write(const std::string& text) const {
        EXPECT_EQ(::write(m_file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    std::string read() const {
        std::string text(65536, '\0');
        text.resize(static_cast<size_t>(std::max<ssize_t>(0, ::read(m_file, text.data(), 65536))));
        return text;
    }
    void close() {
        if (m_file >= 0) {
            ::close(std::exchange(m_file, -1));
        }
    }

private:
    int m_file;
};

class Files : public SystemTest {
protected:
    bool waitFor(const std::string& name, const std::string& part) const {
        for (int i = 0; i < 3000 && text(name).find(part) == std::string::npos; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return text(name).find(part) != std::string::npos;
    }
};

// Whatever the name by which the output leads to the input, and wherever the input is named.
TEST_F(Files, AnInputIsNeverAnOutput) {
    const std::string data = "the only copy";
    const std::string use = "is already used for the input data of the tests";
    write("set.ini", "[Perf System]\nCodeFile=none;data.csv\n");
    write("own.ini", "[ntksEncodeLZ4_8u]\nCodeFile = data.csv\n");
    write("keys", "-dCodeFile=data.csv");
    const Texts ways[] = {{"-dCodeFile=none; data.csv"},
                          {"-iset.ini"},
                          {"-iown.ini"},
                          {"-@keys"},
                          {"-p" + directory()}}; // the last: it is "bib", which is read by itself
    for (const Texts& way : ways) {
        for (const std::string key : {"-r", "-R", "-o", "-O", "-u", "-U", "-x", "-g", "-I"}) {
            if (key == "-I" && way[0].starts_with("-i")) { // which it replaces
                continue;
            }
            for (const std::string output : {"data.csv", "soft.csv", "hard.csv", "./data.csv"}) {
                SCOPED_TRACE(way[0] + " " + key + output);
                for (const char* const name : {"data.csv", "soft.csv", "hard.csv", "bib"}) {
                    fs::remove(path(name));
                }
                write("data.csv", data);
                fs::create_symlink("data.csv", path("soft.csv"));
                fs::create_hard_link(path("data.csv"), path("hard.csv"));
                if (way[0].starts_with("-p")) {
                    fs::create_symlink("hard.csv", path("bib"));
                }
                const Outcome outcome =
                    runWell(quick + lz4 + way + Texts{key + path(output), "-p" + directory()});
                EXPECT_TRUE(hasOnce(outcome.output, use));
                EXPECT_TRUE(hasOnce(outcome.output, fatal));
                EXPECT_EQ(text("data.csv"), data);
                EXPECT_EQ(outcome.output.find("PS Summary"), std::string::npos);
            }
        }
    }
}

// What is answered comes too late to keep the file, but its text is not measured.
TEST_F(Files, AnOutputIsNoInput) {
    const Outcome outcome = runWell({"-f=ntksEncodeLZ4_8u", "-rdata.csv", "-dCodeLength=1000",
                                     "-dMethod=Manual", "-dNumLoops=1", "-AParams"},
                                    {.input = "data.csv\n"});
    EXPECT_TRUE(hasOnce(outcome.output, "-- Can't read file data.csv: this run writes it\n"));
    EXPECT_EQ(Table(text("data.csv")).rows.size(), 0u);
}

TEST_F(Files, ASecondRunDoesNotTakeATableAway) {
    const OpenPipe slow(path("slow"));
    Outcome first;
    std::thread holder([&] {
        first = runWell(quick + lz4 + Texts{"-dCodeFile=slow", "-rtable.csv"});
    });
    EXPECT_TRUE(waitFor("table.csv", "Function,"));
    const Outcome second = runWell(quick + Texts{crc, "-rtable.csv"});
    EXPECT_TRUE(hasOnce(second.output, "table.csv to write: process "));
    EXPECT_TRUE(hasOnce(second.output, " (ntkperf) is writing it; "));
    EXPECT_TRUE(hasOnce(second.output, fatal));
    const Outcome third = runWell(quick + Texts{crc, "-Rtable.csv"});
    EXPECT_EQ(closingCount(third.output, ".Successes"), 1) << third.output;
    slow.write(std::string(1000, 'x'));
    holder.join();
    // The rows of the two that wrote, all whole, one after the other.
    int rows = 0;
    for (const std::string& line : linesOf(text("table.csv"))) {
        const bool isRow = line.starts_with("ntksEncodeLZ4_8u,8u,") || line.starts_with("ntksCRC");
        rows += isRow && std::count(line.begin(), line.end(), ',') == 11 ? 1 : 0;
    }
    EXPECT_EQ(rows, 1 + 5) << text("table.csv") << first.output;
    const Outcome last = runWell(quick + Texts{crc, "-rtable.csv"}); // nobody holds it now
    EXPECT_EQ(Table(text("table.csv")).rows.size(), 5u) << last.output;
}

TEST_F(Files, AppendersAreNotEmptied) {
    const OpenPipe slow(path("slow"));
    std::thread holder([&] { runWell(quick + lz4 + Texts{"-dCodeFile=slow", "-Rtable.csv"}); });
    EXPECT_TRUE(waitFor("table.csv", "Function,"));
    const std::string before = text("table.csv");
    const Outcome second = runWell(quick + Texts{crc, "-rtable.csv"});
    EXPECT_TRUE(hasOnce(second.output, " (ntkperf) is writing it; "));
    EXPECT_EQ(text("table.csv"), before);
    slow.write("data");
    slow.write(std::string(996, 'x'));
    holder.join();
    EXPECT_EQ(Table(text("table.csv")).rows.size(), 1u);
}

TEST_F(Files, APipeWithoutAnotherEndIsRefused) {
    ASSERT_EQ(mkfifo(path("pipe.x").c_str(), 0600), 0);
    const std::pair<Texts, bool> cases[] = {
        {{"-opipe.x"}, true},
        {{"-Opipe.x"}, true},
        {{"-rpipe.x"}, true},
        {{"-upipe.x"}, true},
        {{"-xpipe.x"}, true},
        {{"-gpipe.x"}, false},
        {{"-@" + path("pipe.x")}, true},
        {{"-i" + path("pipe.x")}, false},
        {{"-dCodeFile=pipe.x"}, false},
    };
    for (const auto& [keys, ends] : cases) {
        SCOPED_TRACE(keys[0]);
        const Outcome outcome = runWell(quick + lz4 + keys);
        EXPECT_TRUE(hasOnce(outcome.output, "pipe.x to ")); // -- Can't open file
        EXPECT_EQ(timesIn(outcome.output, fatal), ends ? 1 : 0) << outcome.output;
    }
}

// With somebody at the other end pipes serve as ever.
TEST_F(Files, APipeWithAnotherEndIsUsed) {
    OpenPipe both(path("pipe.x"));
    runWell(quick + Texts{crc, "-rpipe.x"});
    EXPECT_EQ(Table(both.read()).rows.size(), 5u);
    runWell(quick + Texts{crc, "-xpipe.x"});
    EXPECT_EQ(linesOf(both.read()).size(), 8u) << "run, five lengths, test, end";
    both.write("-f=ntksAdler32_8u\n");
    std::thread closer([&] { // the end of the file is where the last writer leaves
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        both.close();
    });
    const Outcome outcome = runWell(quick + Texts{"-@" + path("pipe.x")});
    closer.join();
    EXPECT_TRUE(hasOnce(outcome.output, " Function : ntksAdler32_8u\n"));
}

// Each is named, and those that can be are measured.
TEST_F(Files, AnInputWithoutBytesIsNamed) {
    write("empty", "");
    write("full", std::string(1000, 'x'));
    fs::create_directory(path("folder"));
    const Outcome outcome =
        runWell(quick + lz4 + Texts{"-dCodeFile=empty;missing;folder;/proc/self/mem;full", "-rt"});
    for (const std::string said :
         {"-- Can't read file empty: it is empty\n", "-- Can't open file missing to read\n",
          "-- Can't open file folder to read\n",
          "-- Can't read file /proc/self/mem: Input/output error\n"}) {
        EXPECT_TRUE(hasOnce(outcome.output, said));
    }
    EXPECT_EQ(Table(text("t.csv")).column("CodeFile"), std::set<std::string>{"full"});
}

} // namespace
