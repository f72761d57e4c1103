#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "columns.h"
#include "handmade.h"
#include "terminal.h"

namespace report {

namespace {

struct Small : Handmade {
    Small() {
        addCase("ntksEncodeLZ4_8u", 16384, 5);
        addCase("ntksEncodeLZ4_8u", 32768, 10);
        addCase("ntksCRC32_8u", 16384, 0.25);
        addFailed("ntksCRC32_8u", {{"Length", 32768LL}}, "FUNCFAIL", "-4");
    }
    Case& addCase(const std::string& function, long long length, double clocks) {
        Case& one = add(function, {{"Length", length}}, {clocks});
        one.family = function;
        one.length = static_cast<double>(length);
        one.ratio = 1.5;
        one.spread = 0.02;
        return one;
    }
};

TEST(Terminal, AFunctionIsALine) {
    EXPECT_EQ(
        terminalText(Small().report, {.hasBlocks = true}),
        "1 run, 2026-11-22T01:02:03+00:00\n"
        "A processor x2 at 2.00 GHz (desk)\n"
        "ntkDC 12.0.0, Nov 22 2026\n"
        "\n"
        "Function          Cases  Failed  Clocks  lowest  highest  by length           Ratio  "
        "MB/s  Spread\n"
        "ntksEncodeLZ4_8u      2            7.50    5.00     10.0  \u2584\u2588         "
        "16K-32K   1.50   267   2.00%\n"
        "ntksCRC32_8u          1       1   0.250   0.250    0.250  \u2588          16K       "
        "1.50  8000   2.00%\n"
        "Clocks: per byte of uncompressed data, the median of the cases; bars by length, each "
        "function's own scale\n"
        "Spread: median 2.00%; above 5% in 0 of 3 cases; largest 2.00%, ntksEncodeLZ4_8u "
        "Length=16384\n"
        "\n"
        "Failed:\n"
        "  ntksCRC32_8u Length=32768: FUNCFAIL, -4\n");
}

TEST(Terminal, NoLineIsWiderThanTheTerminal) {
    for (const int columns : {40, 60, 80, 100}) {
        std::istringstream lines(terminalText(Small().report, {.columns = columns}));
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(common::columnsOf(line), columns) << line;
        }
    }
}

TEST(Terminal, ColoursAreThereOnlyWhenWanted) {
    const auto text = [](bool hasColours) {
        return terminalText(Small().report, {.hasColours = hasColours});
    };
    EXPECT_NE(text(true).find("\x1b[31m1\x1b[0m"), std::string::npos) << "the failed case";
    EXPECT_EQ(text(false).find('\x1b'), std::string::npos);
}

TEST(Terminal, NoFunctionFailedNoColumnSaysSo) {
    Handmade made;
    made.add("ntksA_8u", {}, {4, 5});
    const std::string text = terminalText(made.report, {});
    EXPECT_EQ(text.find("Failed"), std::string::npos);
    EXPECT_NE(text.find("2 runs"), std::string::npos);
}

TEST(Terminal, ANameCannotCommandTheTerminal) {
    Handmade made;
    made.add("ntksA\x1b[2J_8u", {{"CodeFile", "\x1b[31mx"}}, {4}).spread = 1;
    made.addFailed("ntksB_8u", {}, "FAIL", "\x1b]0;owned\x07");
    made.group().label = "\x1b[5m";
    EXPECT_EQ(terminalText(made.report, {}).find('\x1b'), std::string::npos);
}

TEST(Terminal, GroupsHaveTheirLabels) {
    Small made;
    made.group().label = "12.0.0";
    made.addGroup("12.0.1");
    made.addCase("ntksEncodeLZ4_8u", 16384, 4);
    const std::string text = terminalText(made.report, {});
    EXPECT_EQ(text.rfind("12.0.0\n1 run", 0), 0u);
    EXPECT_NE(text.find("\n\n12.0.1\n1 run"), std::string::npos);
}

TEST(Terminal, UnitsThatAreNoBytesAreMarked) {
    Handmade made;
    made.add("memcpy", {}, {4}).bytesPerUnit.reset();
    const std::string text = terminalText(made.report, {});
    EXPECT_NE(text.find("memcpy*"), std::string::npos);
    EXPECT_NE(text.find("* per unit of the function"), std::string::npos);
}

TEST(Terminal, ManyLengthsKeepTheFirstAndTheLast) {
    Small made;
    for (int i = 1; i <= 100; ++i) {
        made.addCase("ntksMany_8u", i, i);
    }
    const std::string text = terminalText(made.report, {});
    const std::size_t at = text.find("ntksMany_8u");
    const std::string line = text.substr(at, text.find('\n', at) - at);
    const std::size_t first = line.find('_', 12);
    EXPECT_EQ(line.find("  1-100"), first + 16) << line;
    EXPECT_EQ(line[first + 15], '#') << line;
}

TEST(Terminal, OfAComparisonThereIsWhatChanged) {
    Report report;
    Comparison& comparison = report.comparisons.emplace_back();
    comparison.base = "12.0.0";
    comparison.changed = "12.0.1";
    comparison.medianHalfWidth = 0.002;
    comparison.isComplete = false;
    comparison.ratio = 1.02;
    comparison.low = 1.01;
    comparison.high = 1.03;
    comparison.cases = {comparedCase("ntksA_8u", "", "same", 1, 0),
                        comparedCase("ntksA_8u", "Length=1", "slower", 1.1, 0.05),
                        failedCase("ntksB_8u", "new: killed by SIGSEGV")};
    EXPECT_EQ(terminalText(report, {}),
              "12.0.1 against 12.0.0\n"
              "Half of the differences are known to 0.20% or better\n"
              "On the whole +2.00%  [+1.00%, +3.00%]\n"
              "It did not come to its end\n"
              "1 failed, 1 slower, 1 same\n"
              "\n"
              "Function  Parameters   Base    New  Difference                  Verdict\n"
              "ntksB_8u                                                        failed\n"
              "ntksA_8u  Length=1    4.000  4.400  +10.00%  [+5.00%, +15.00%]  slower\n"
              "\n"
              "Failed:\n"
              "  ntksB_8u: new: killed by SIGSEGV\n");
    comparison.cases.assign(30, ComparedCase(comparison.cases[1]));
    EXPECT_NE(terminalText(report, {}).find("\n... and 10 more\n"), std::string::npos);
}

} // namespace

} // namespace report
