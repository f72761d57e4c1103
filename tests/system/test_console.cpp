// A console: its questions, asked without "-B" on whatever standard input is, and its width.
#include "session.h"

namespace {

class Questions : public SystemTest {};

constexpr const char* ended = "\n-- The console input has ended, defaults are taken from here on\n";

TEST_F(Questions, ConsoleAtItsEndMeansDefaults) {
    for (const Texts& keys : {Texts{}, Texts{"-A"}, Texts{"-ATM"}}) {
        const Outcome outcome =
            runWell(keys + Texts{crc, "-dMethod=Manual", "-rtable.csv"}, {.input = ""});
        EXPECT_TRUE(hasOnce(outcome.output, "NumLoops [10]: "));
        EXPECT_TRUE(hasOnce(outcome.output, ended));
        const Table table(text("table.csv"));
        EXPECT_EQ(table.rows.size(), 5u);
        EXPECT_EQ(table.column("Comment"), std::set<std::string>{"nLps=10"});
    }
}

TEST_F(Questions, ABadAnswerIsNamedAndAskedAgain) {
    const Outcome outcome =
        runWell({crc, "-rtable.csv"}, {.input = "Quickly\nman\nabc\n0\n3\n\n16384;x;*2\n32768\n"});
    const std::pair<std::string, int> cases[] = {
        {"Specify timing method, please", 1},
        {"Method {Auto|Manual|Statistic|Iterative} [Auto]: ", 2},
        {"(Method = Quickly is rejected; keeping Auto)\n", 1},
        {"Method = Manual\n", 1},
        {"NumLoops [10]: ", 3},
        {"(NumLoops = abc is rejected; keeping 10)\n", 1},
        {"(NumLoops = 0 is rejected; keeping 10)\n", 1},
        {"NumLoops = 3\n", 1},
        {"Accuracy, % [5]: ", 1},
        {"Specify common test parameters, please", 1},
        {"for CodeLength [16384; 262144; *2]: ", 2},
        {"(CodeLength = 16384;x;*2 is rejected; keeping 16384; 262144; *2)\n", 1},
        {ended, 0},
    };
    for (const auto& [text, times] : cases) {
        EXPECT_EQ(timesIn(outcome.output, text), times) << text << outcome.output;
    }
    const Table table(text("table.csv"));
    EXPECT_EQ(table.column("Length"), std::set<std::string>{"32768"});
    EXPECT_EQ(table.column("Comment"), std::set<std::string>{"nLps=3"});
}

// Alignment is asked once, a test's own parameters before each test.
TEST_F(Questions, EverythingAskedForIsAsked) {
    const std::string answers = "\n\n16384\nelement\n4\nno\n128\n32768\n65536\n";
    const Outcome outcome = runWell(
        {"-A", crc, "-f=ntksAdler32_8u", "-dMethod=Manual", "-rtable.csv"}, {.input = answers});
    for (const char* const taken :
         {"Specify vectors alignment, please", "AlignVectorsBy = element\n",
          "VectorAlign by Element, 0..63 [0]: 4\nVectorAlign = 4\n",
          "MisalignFirstVectorOnly = no\n", "MutualVectorShift = 128\n"}) {
        EXPECT_TRUE(hasOnce(outcome.output, taken));
    }
    const Table table(text("table.csv"));
    ASSERT_EQ(table.rows.size(), 2u);
    EXPECT_EQ(table.cell(table.rows[0], "Function"), "ntksAdler32_8u");
    EXPECT_EQ(table.cell(table.rows[0], "Length"), "32768");
    EXPECT_EQ(table.cell(table.rows[1], "Length"), "65536");
}

TEST_F(Questions, BatchModeAsksNothing) {
    const std::optional<std::string> inputs[] = {"Manual\n7\n1\n16384\n", std::nullopt};
    for (const auto& input : inputs) {
        for (const Texts& asking : {Texts{}, Texts{"-A"}}) {
            const Outcome outcome =
                runWell(quick + asking + Texts{crc, "-rtable.csv"}, {.input = input});
            EXPECT_EQ(timesIn(outcome.output, "please"), 0) << outcome.output;
            EXPECT_EQ(timesIn(outcome.output, "]: "), 0) << outcome.output;
            EXPECT_EQ(Table(text("table.csv")).rows.size(), 5u);
        }
    }
}

class Help : public SystemTest {};

TEST_F(Help, FitsATerminalAndStaysAsItIsElsewhere) {
    for (const char* const key : {"-h", "-??"}) {
        const std::string plain = runWell({key}).output;
        const std::string wrapped = runWell({key}, {.console = Console::terminal}).output;
        for (const std::string& line : linesOf(wrapped.substr(wrapped.find(" HELP")))) {
            EXPECT_LE(line.length(), 60u) << line;
        }
        EXPECT_TRUE(hasOnce(plain, " and write function parameter name lines\n"));
        EXPECT_TRUE(
            hasOnce(wrapped, "\n                   and write function parameter name lines\n"));
    }
}

} // namespace
