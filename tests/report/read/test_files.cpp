#include "lines.h"
#include "scratch.h"
#include "tables.h"

namespace report {

namespace {

using Files = Scratch;

const std::string comparison = R"({
"format": "ntkcompare",
"version": 1,
"started": "2026-11-22T02:43:17+00:00",
"complete": false,
"settings": {"tolerance":0.01,"confidence":0.99},
"machine": "A processor",
"base": {"directory":"/ref","keys":["-B"],"version":"12.0.0","files":[]},
"new": {"directory":"own","keys":["-B","-TSSE42"],"version":"12.0.1","files":[]},
"summary": {"median_half_width":0.0096,"all":{"cases":2,"ratio":1.002,"low":null,"high":1.01}},
"cases": [
{"function":"ntksA_8u","parameters":{"A":1,"F":"x"},"new_parameters":null,"verdict":"slower","beyond_tolerance":true,"passed_over":"","effect":{"ratio":1.25,"low":1.2,"high":null,"base_clocks_per_unit":4,"new_clocks_per_unit":5},"failures":[],"starts":[{"pass":1,"base":{"clocks":[1,2,3]}}]},
{"function":"ntksB_8u","parameters":{"A":1},"new_parameters":{"A":2},"verdict":"failed","beyond_tolerance":false,"effect":null,"failures":[{"side":"new","what":"killed by SIGSEGV","detail":"last words"}],"starts":[]}
]
}
)";

TEST_F(Files, AComparisonIsReadWithoutItsRounds) {
    const Reading reading = read(comparison);
    ASSERT_EQ(reading.comparisons.size(), 1u) << reading.problems.front();
    const Comparison& its = reading.comparisons[0];
    EXPECT_EQ(its.base, "12.0.0 in /ref (-B)");
    EXPECT_EQ(its.changed, "12.0.1 (-B -TSSE42)");
    EXPECT_EQ(its.started + its.machine, "2026-11-22T02:43:17+00:00A processor");
    EXPECT_EQ(its.tolerance, 0.01);
    EXPECT_EQ(its.confidence, 0.99);
    EXPECT_EQ(its.medianHalfWidth, 0.0096);
    EXPECT_EQ(its.ratio, 1.002);
    EXPECT_FALSE(its.low);
    EXPECT_EQ(its.high, 1.01);
    EXPECT_FALSE(its.isComplete);
    ASSERT_EQ(its.cases.size(), 2u);
    EXPECT_EQ(its.cases[0].parameters, "A=1 F=x");
    EXPECT_EQ(its.cases[0].verdict, "slower");
    EXPECT_TRUE(its.cases[0].isBeyondTolerance);
    EXPECT_EQ(its.cases[0].ratio, 1.25);
    EXPECT_EQ(its.cases[0].low, 1.2);
    EXPECT_FALSE(its.cases[0].high);
    EXPECT_EQ(its.cases[0].newClocksPerUnit, 5);
    EXPECT_EQ(its.cases[1].parameters, "A=1 -> A=2");
    EXPECT_FALSE(its.cases[1].ratio);
    EXPECT_EQ(its.cases[1].failure, "new: killed by SIGSEGV\nlast words");
}

TEST_F(Files, TheKindIsThatOfTheContent) {
    const std::string record = R"({"record":"measurement","function":"f"})";
    struct Row {
        std::string text;
        std::size_t runs, comparisons;
    };
    const Row rows[] = {{head + row, 1, 0},
                        {names + row, 1, 0},
                        {"\xEF\xBB\xBF" + head + row, 1, 0},
                        {"\n\n" + head + row, 1, 0},
                        {record + "\n", 1, 0},
                        {record, 1, 0},
                        {"\n \n" + record, 1, 0},
                        {comparison, 0, 1},
                        {R"({"cases":[],"format":"ntkcompare"})", 0, 1}};
    for (const Row& expected : rows) {
        const Reading reading = read(expected.text);
        EXPECT_EQ(reading.runs.size(), expected.runs) << expected.text;
        EXPECT_EQ(reading.comparisons.size(), expected.comparisons) << expected.text;
        EXPECT_TRUE(reading.problems.empty()) << reading.problems.front();
    }
    EXPECT_EQ(read("\xEF\xBB\xBF" + head + row).runs.at(0).facts.processors, 2)
        << "a byte order mark hides the first title";
}

TEST_F(Files, WhatIsNoneIsOneSentence) {
    const std::string noTable =
        "file is no performance table: no line of it names the columns (Function, ... Clocks, "
        "...); give the file of -r or of -x";
    const std::pair<std::string, std::string> cases[] = {
        {"", "file is empty"},
        {"\n\n", "file is empty"},
        {"a log\nof a run\n", noTable},
        {titles, noTable},
        {std::string(5000, '\n') + "x", noTable},
        {"Function,Test,Result\nf,t,OK\n", noTable},
        {comparison.substr(0, 400), "file begins as JSON but is none: it is broken, or was not "
                                    "written to its end"},
        {"{\"context\": {}}", "file is JSON, but neither records of ntkperf (-x) nor a comparison "
                              "of ntkcompare (--json)"},
        {"[1]", "file is JSON, but neither records of ntkperf (-x) nor a comparison of ntkcompare "
                "(--json)"},
        {R"({"format":"ntkcompare","version":2})",
         "file is of version 2 of the format, this program reads up to 1; read it with a newer "
         "ntkreport"},
    };
    for (const auto& [text, sentence] : cases) {
        const Reading reading = read(text);
        ASSERT_EQ(reading.problems.size(), 1u) << sentence;
        EXPECT_EQ(plain(reading.problems[0]), sentence);
        EXPECT_TRUE(reading.runs.empty() && reading.comparisons.empty());
    }
}

TEST_F(Files, WhatCannotBeOpenedIsOneSentence) {
    Reading reading;
    readFile(path("nowhere"), reading);
    readFile(m_folder.string(), reading);
    readFile(write("table", head + row), reading);
    ASSERT_EQ(reading.problems.size(), 2u);
    EXPECT_EQ(plain(reading.problems[0]), "cannot read nowhere: No such file or directory");
    EXPECT_EQ(reading.problems[1], "cannot read " + m_folder.string() + ": Is a directory");
    EXPECT_EQ(reading.runs.size(), 1u) << "the file behind them is read";
}

TEST_F(Files, MeasurementsAreToldFromReports) {
    for (const std::string& text :
         {head + row, names, comparison, std::string(R"({"record":"run"})")}) {
        EXPECT_TRUE(holdsMeasurements(write("file", text))) << text;
    }
    for (const char* text : {"", "group,function\n", "<!doctype html>", "{\"context\": {}}"}) {
        EXPECT_FALSE(holdsMeasurements(write("file", text))) << text;
    }
    EXPECT_FALSE(holdsMeasurements(path("nowhere")));
}

TEST_F(Files, LinesAreWholeWhereverPiecesEnd) {
    constexpr std::size_t piece = 1 << 20;
    for (const std::size_t length : {piece - 1, piece, piece + 1, 3 * piece}) {
        const std::string text = std::string(length, 'a') + "\r\n\nlast";
        LineReader lines(write("lines", text));
        ASSERT_TRUE(lines.next());
        EXPECT_EQ(lines.line().size(), length);
        EXPECT_TRUE(lines.isWhole());
        ASSERT_TRUE(lines.next());
        EXPECT_EQ(lines.line(), "");
        ASSERT_TRUE(lines.next());
        EXPECT_EQ(lines.line(), "last");
        EXPECT_FALSE(lines.isWhole());
        EXPECT_EQ(lines.number(), 3);
        EXPECT_FALSE(lines.next());
    }
}

} // namespace

} // namespace report
