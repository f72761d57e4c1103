// Google Benchmark's own reader of its files, as Debian installs it.
#include "exchange.h"
#include "handmade.h"
#include "reader.h"

namespace report {

namespace {

constexpr const char* compareProgram = "/usr/share/benchmark/compare.py";

class ComparePy : public Reader {
protected:
    void SetUp() override {
        if (!fs::exists(compareProgram) || !hasPython("scipy, numpy")) {
            GTEST_SKIP() << "compare.py is not installed: apt-get install libbenchmark-tools "
                            "python3-scipy python3-numpy";
        }
    }

    // As many runs of two cases around so many clocks, no two alike, with a failure.
    static std::string file(double clocks, int runs) {
        std::vector<double> book, pic;
        for (int i = 0; i < runs; ++i) {
            book.push_back(clocks + 0.01 * i);
            pic.push_back(2 + 0.01 * i);
        }
        Handmade made;
        made.add("ntksFirst_8u", {{"CodeFile", "book 1"}}, book);
        made.add("ntksFirst_8u", {{"CodeFile", "<pic>\n"}}, pic);
        made.addFailed("ntksFirst_8u", {{"CodeFile", "geo"}}, "FUNCFAIL", "status -5");
        return googleBenchmarkText(made.report);
    }

    Answer compared(double baseClocks, double newClocks, int runs) const {
        return python(compareProgram + std::string(" --no-color benchmarks ") +
                      write("base.json", file(baseClocks, runs)) + ' ' +
                      write("new.json", file(newClocks, runs)));
    }
};

} // namespace

TEST_F(ComparePy, ReadsRepetitionsTestsThemAndHasAMeanOfAll) {
    const Answer answer = compared(4, 5, 9);
    ASSERT_EQ(answer.status, 0) << answer.text;
    // 4 clocks x 1000 units at 2000 MHz
    EXPECT_NE(answer.text.find("          2000          2500          2000          2500\n"),
              std::string::npos)
        << answer.text;
    EXPECT_NE(answer.text.find("ntksFirst_8u/CodeFile=book%201_pvalue "), std::string::npos)
        << answer.text;
    EXPECT_NE(answer.text.find("          0.0004          0.0004"
                               "      U Test, Repetitions: 9 vs 9\n"),
              std::string::npos)
        << answer.text;
    EXPECT_NE(answer.text.find("ntksFirst_8u/CodeFile=<pic>%0A_pvalue "), std::string::npos)
        << answer.text;
    EXPECT_NE(answer.text.find("OVERALL_GEOMEAN "), std::string::npos) << answer.text;
    EXPECT_EQ(answer.text.find("Warning"), std::string::npos) << answer.text;
}

TEST_F(ComparePy, ReadsSingleRunsAndFilesWithoutRows) {
    for (const int runs : {0, 1, 2}) {
        const Answer answer = compared(4, 5, runs);
        EXPECT_EQ(answer.status, 0) << answer.text;
        EXPECT_NE(answer.text.find("Time Old"), std::string::npos) << answer.text;
    }
}

} // namespace report
