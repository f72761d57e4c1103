// Outputs that take nothing any more: no more is lost than what they could not take, and what is
// left says so.
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
    const Outcome log = runWell(keys("/dev/full", "table.csv", "sum.csv"));
    EXPECT_EQ(timesIn(log.output, full), 1) << log.output;
    expectWhole(log.output);
    expectTable();
    expectSummary();

    const Outcome table = runWell(keys("log.txt", "/dev/full", "sum.csv"));
    EXPECT_EQ(timesIn(table.output, full), 1) << table.output;
    EXPECT_EQ(timesIn(text("log.txt"), full), 1);
    expectWhole(table.output);
    expectWhole(text("log.txt"));
    expectSummary();

    const Outcome summary = runWell(keys("log.txt", "table.csv", "/dev/full"));
    EXPECT_EQ(timesIn(text("log.txt"), full), 1);
    expectWhole(summary.output);
    expectTable();

    const Outcome signal = runWell(keys("log.txt", "table.csv", "sum.csv") + Texts{"-g/dev/full"});
    EXPECT_TRUE(signal.output.ends_with(full)) << signal.output;
}

TEST_F(LostOutput, AConsoleThatIsGoneIsSaidInTheLog) {
    const struct {
        Console console;
        const char* reason;
    } cases[] = {{Console::brokenPipe, "Broken pipe"},
                 {Console::closed, "Bad file descriptor"},
                 {Console::fullDisk, "No space left on device"}};
    for (const auto& c : cases) {
        runWell(keys("log.txt", "table.csv", "sum.csv"), {.console = c.console});
        const std::string said = "-- Can't write to console: " + std::string(c.reason) + "\n";
        EXPECT_EQ(timesIn(text("log.txt"), said), 1) << text("log.txt");
        expectWhole(text("log.txt"));
        expectTable();
        expectSummary();
        runWell(quick + Texts{crc}, {.console = c.console});
    }
}

} // namespace
