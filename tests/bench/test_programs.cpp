// The programs that put measurements to the test, as their users run them. What they measure is
// nobody's business here.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "../scratch.h"
#include "process.h"

namespace fs = std::filesystem;

namespace {

// A folder with a stand-in for book1, the slowed library and a file of results.
class Programs : public testing::Test {
protected:
    Programs() {
        std::ofstream book(m_folder / "book1");
        for (int line = 0; line < 1000; ++line) {
            book << "a line of the number " << line * 7919 % 1000 << '\n';
        }
        fs::copy_file(NTK_SLOWER_FILE, m_folder / "libntkdc.so.12");
        std::ofstream(m_folder / "results")
            << R"({"method":"ntkcompare","subject":"f","added":0.02,"neighbour":true,"truth":1.02,)"
               R"("estimate":1.021,"low":1.01,"high":1.03,"called":"slower","seconds":0.5})"
               "\n"
               R"({"neighbour":false,"in_turns":9.5,"wall":10})"
               "\n";
        std::ofstream(m_folder / "damaged") << "{\"method\":1}\n";
    }

    Outcome run(const char* program, std::vector<std::string> arguments,
                std::vector<std::string> environment = {}) const {
        environment.push_back("CORPUS=");
        return runCommand({.program = program,
                           .arguments = std::move(arguments),
                           .directory = m_folder.string(),
                           .environment = std::move(environment)});
    }

    const TemporaryDirectory m_directory;
    const fs::path m_folder = m_directory.path();
};

TEST_F(Programs, WrongCommandLinesAreRefused) {
    struct Case {
        const char* program;
        std::vector<std::string> arguments;
        int status;
        const char* message;
    };
    const Case cases[] = {
        {NTK_POWER_FILE, {"--round", "x"}, 2, "--round"},
        {NTK_POWER_FILE, {"--show"}, 2, "needs --results FILE"},
        {NTK_POWER_FILE, {"--only-quiet", "--only-disturbed"}, 2, "excludes"},
        {NTK_POWER_FILE, {"--show", "--results", "damaged"}, 1, "not a line of results"},
        {NTK_POWER_FILE, {"--results", "nowhere/results"}, 1, "cannot write to"},
        {NTK_KNOWN_COST_FILE, {"--rounds", "0"}, 2, "--rounds"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = run(c.program, c.arguments);
        EXPECT_EQ(outcome.status, c.status) << c.message << outcome.errors;
        EXPECT_NE(outcome.errors.find(c.message), std::string::npos) << outcome.errors;
        EXPECT_EQ(outcome.output, "");
    }
}

TEST_F(Programs, ResultsThatAreKeptCanBeShown) {
    const Outcome outcome = run(NTK_POWER_FILE, {"--show", "--markdown", "--results", "results"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    for (const char* line : {"| 2% | yes | ntkcompare | 1 | 1 (100.0%) |",
                             "| a run of long cases, quiet: wall time inside turns, at least 90% | "
                             "95.0% of 10.0 s | yes |"}) {
        EXPECT_NE(outcome.output.find(line), std::string::npos) << outcome.output;
    }
}

// A line for each of the two cases.
TEST_F(Programs, ACalibrationTellsTheChainForEachLevel) {
    const std::vector<std::string> keys = {"--",
                                           "-B",
                                           "-f=ntksCRC32_8u",
                                           "-f=ntksDecodeLZ4_8u",
                                           "-dCodeFile=book1",
                                           "-dCodeLength=8192"};
    std::vector<std::string> arguments = {"--out",    "cases",    "--calibrate",
                                          "--levels", "0.01,0.5", "--seconds=0.01"};
    arguments.insert(arguments.end(), keys.begin(), keys.end());
    const Outcome outcome =
        run(NTK_PLAIN_FILE, arguments, {"LD_LIBRARY_PATH=" + m_folder.string()});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    std::ifstream file(m_folder / "cases");
    std::vector<std::string> functions;
    for (std::string line; std::getline(file, line);) {
        const auto one = nlohmann::json::parse(line);
        functions.push_back(one.at("function"));
        EXPECT_EQ(one.at("parameters").at("CodeLength"), 8192);
        ASSERT_EQ(one.at("levels").size(), 2U);
        EXPECT_GT(one["levels"][1].at("links"), one["levels"][0].at("links"));
        EXPECT_GT(one["levels"][1].at("chain_clocks"), one["levels"][0].at("chain_clocks"));
    }
    EXPECT_EQ(functions, (std::vector<std::string>{"ntksCRC32_8u", "ntksDecodeLZ4_8u"}));

    const Outcome refused = run(NTK_PLAIN_FILE, arguments);
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.errors.find("the library loaded cannot slow ntksCRC32_8u"), std::string::npos)
        << refused.errors;
}

TEST_F(Programs, ASideIsMeasuredWithNineRepetitionsAndAPlainLoop) {
    const Outcome outcome = run(NTK_PLAIN_FILE, {"--out", "side", "--seconds=0.01", "--", "-B",
                                                 "-f=ntksCRC32_8u", "-dCodeLength=8192"});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    std::ifstream file(m_folder / "side");
    const auto side = nlohmann::json::parse(file);
    EXPECT_EQ(side.at("benchmark").size(), 9U);
    EXPECT_GT(side.at("quickest"), 0);
}

} // namespace
