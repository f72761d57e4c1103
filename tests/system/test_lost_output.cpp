// Outputs that take nothing any more: no more is lost than what they could not take, and what is
// left says so.
#include <filesystem>

#include "session.h"

namespace {

class LostOutput : public SystemTest {
protected:
    Texts keys(const std::string& log, const std::string& table, const std::string& summary) const {
        return quick + Texts{crc, "-o" + log, "-r" + table, "-u" + summary};
    }
    void expectWhole(const std::string& log) const {
        EXPECT_EQ(closingCount(log, ".Successes"), 1) << log;
    }
    void expectTable() const { EXPECT_EQ(Table(text("table.csv")).rows.size(), 5u); }
    void expectSummary() const {
        EXPECT_TRUE(text("sum.csv").ends_with("END_DATA\n")) << text("sum.csv");
    }
};

const std::string full = "-- Can't write to file /dev/full: No space left on device\n";

TEST_F(LostOutput, AFullDiskUnderAFileIsSaidOnTheOthers) {
    for (const std::string lost : {"log", "table", "summary", "records", "signal"}) {
        SCOPED_TRACE(lost);
        const auto unlessLost = [&lost](const std::string& output, const std::string& name) {
            return output == lost ? "/dev/full" : name;
        };
        const std::string console =
            runWell(keys(unlessLost("log", "log.txt"), unlessLost("table", "table.csv"),
                         unlessLost("summary", "sum.csv")) +
                    Texts{"-x" + unlessLost("records", "run"), "-g" + unlessLost("signal", "end")})
                .output;
        EXPECT_TRUE(hasOnce(console, full));
        expectWhole(console);
        if (lost != "log") {
            expectWhole(text("log.txt"));
            EXPECT_TRUE(hasOnce(text("log.txt"), full));
        }
        if (lost != "table") {
            expectTable();
        }
        if (lost != "summary") {
            expectSummary();
        }
    }
}

TEST_F(LostOutput, AConsoleThatIsGoneIsSaidInTheLog) {
    const std::pair<Console, const char*> cases[] = {
        {Console::brokenPipe, "Broken pipe"},
        {Console::closed, "Bad file descriptor"},
        {Console::fullDisk, "No space left on device"}};
    for (const auto& [console, reason] : cases) {
        runWell(keys("log.txt", "table.csv", "sum.csv"), {.console = console});
        const std::string said = "-- Can't write to console: " + std::string(reason) + "\n";
        EXPECT_TRUE(hasOnce(text("log.txt"), said));
        expectWhole(text("log.txt"));
        expectTable();
        expectSummary();
        runWell(quick + Texts{crc}, {.console = console});
    }
}

// A key that would take the file of another one is refused, before it spoils what is in there.
TEST_F(LostOutput, TwoKeysForOneFile) {
    write("args.txt", "-s-");
    write("old.csv", "old\n");
    std::filesystem::create_symlink("old.csv", path("link.csv"));
    const std::string old = path("old.csv"), args = path("args.txt");
    const struct {
        Texts keys;
        std::string refused, user;
        bool goesOn;
    } cases[] = {
        {{"-rt", "-Rt"}, "-Rt", "t.csv is already used for PS results (-r key)", true},
        {{"-rsame.x", "-xsame.x"}, "-xsame.x", "same.x is already used for PS results (-r", false},
        {{"-xsame.x", "-usame.x"},
         "-usame.x",
         "same.x is already used for records for programs (-x key)",
         false},
        {{"-Ut", "-u./t.csv"},
         "-u./t.csv",
         "./t.csv is already used for summary table (-U key)",
         true},
        {{"-rt", "-ut"}, "-ut", "t.csv is already used for PS results (-r key)", false},
        {{"-R" + old, "-ulink"},
         "-ulink",
         "link.csv is already used for PS results (-R key)",
         false},
        {{"-u" + old, "-R" + old}, "-R" + old, "summary table (-u key)", false},
        {{"-gold.csv", "-R" + old}, "-R" + old, "the end signal (-g key)", false},
        {{"-R" + old, "-gold.csv"},
         "-gold.csv",
         "old.csv is already used for PS results (-R",
         false},
        {{"-onew.ini", "-i" + path("new.ini")}, "-onew.ini", "PS parameters (-i key)", false},
        {{"-@" + args, "-oargs"}, "-oargs", "command line options (-@ key)", false},
        {{"-@" + args, "-I" + args}, "-I" + args, "command line options (-@ key)", false},
    };
    for (const auto& c : cases) {
        const Outcome outcome = runWell(quick + Texts{crc} + c.keys);
        EXPECT_TRUE(hasOnce(outcome.output, "\n" + c.refused + ": ignored: file "));
        EXPECT_TRUE(hasOnce(outcome.output, c.user));
        EXPECT_EQ(outcome.output.ends_with("FATAL FAIL: can't open output file for writing\n"),
                  !c.goesOn)
            << outcome.output;
    }
    const Outcome answers = runWell(quick + Texts{crc, "-o/dev/stdin"}, {.input = "answers\n"});
    EXPECT_TRUE(hasOnce(answers.output, "/dev/stdin is already used for console input\n"));
    EXPECT_EQ(text("old.csv"), "old\n");
    EXPECT_EQ(text("args.txt"), "-s-");
    runWell(quick + Texts{crc, "-rtable", "-Rtable", "-o/dev/null", "-g/dev/null"});
    expectTable();
}

} // namespace
