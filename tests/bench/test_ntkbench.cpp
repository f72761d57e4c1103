// ntkbench as its users run it: the command line, and one round of every comparison on a small
// stand-in. What the figures are is nobody's business here.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "../patterns.h"
#include "../scratch.h"
#include "../texts.h"
#include "process.h"

namespace fs = std::filesystem;

namespace {

// A folder with stand-ins: book1 and pic.
class Ntkbench : public testing::Test {
protected:
    Ntkbench() {
        for (const char* name : {"book1", "pic"}) {
            std::ofstream file(m_corpus / name);
            for (int line = 0; line < 1000; ++line) {
                file << name << " has a line of the number " << line * 7919 % 1000 << '\n';
            }
        }
        std::ofstream(m_corpus / "empty");
    }

    Outcome run(const std::vector<std::string>& arguments) const {
        return runCommand({.program = NTK_BENCH_FILE,
                           .arguments = arguments,
                           .directory = m_corpus.string(),
                           .environment = {"CORPUS="}});
    }

    const TemporaryDirectory m_directory;
    const fs::path m_corpus = m_directory.path();
};

TEST_F(Ntkbench, WhatCannotBeDoneIsSaidOnStandardErrorWithItsStatus) {
    struct Case {
        std::vector<std::string> arguments;
        int status;
        const char* message;
    };
    const Case cases[] = {
        {{"brotli"}, 2, "no comparison is named brotli"},
        {{"checksum", "book1"}, 2, "leave out book1"},
        {{"--quick"}, 2, "--quick"},
        {{"--rounds", "0", "lz4"}, 2, "--rounds"},
        {{"--rounds", "1", "lz4", "book3"}, 1, "book3: No such file or directory"},
        {{"--rounds", "1", "lz4", "empty"}, 1, "empty: it is empty"},
        {{"--rounds", "1", "lz4", "book1", "book3"}, 1, "book3: No such file or directory"},
        {{"--corpus", "/nowhere", "lz4"}, 1, "/nowhere/book1"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = run(c.arguments);
        EXPECT_EQ(outcome.status, c.status) << c.message;
        EXPECT_EQ(outcome.output, "") << c.message;
        EXPECT_EQ(outcome.errors.rfind("ntkbench: ", 0), 0u) << outcome.errors;
        EXPECT_NE(outcome.errors.find(c.message), std::string::npos) << outcome.errors;
    }
}

TEST_F(Ntkbench, OutputThatIsLostFailsTheRun) {
    const Outcome outcome = runCommand(
        {.program = NTK_BENCH_FILE, .arguments = {"--list"}, .console = Console::fullDisk});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find("No space left on device"), std::string::npos) << outcome.errors;
}

TEST_F(Ntkbench, HelpAndVersionArePrinted) {
    const Outcome help = run({"-h"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    EXPECT_EQ(run({"--help"}).output, help.output);
    for (const char* text : {"Usage: ntkbench [OPTION...] [COMPARISON [FILE...]]\n", "--rounds N ",
                             "Comparisons (all", "Examples:", "Exit status:"}) {
        EXPECT_NE(help.output.find(text), std::string::npos) << text;
    }
    for (const char* key : {"-V", "--version"}) {
        const Outcome version = run({key, "lz4"});
        EXPECT_EQ(version.status, 0) << key;
        EXPECT_EQ(version.output, "ntkbench " NTK_VERSION "\n");
    }
}

// The document's template too, which is filled in from the comparisons.
TEST_F(Ntkbench, EveryListedComparisonIsExplainedAndInTheDocument) {
    const Outcome list = run({"--list"});
    const std::string help = run({"--help"}).output;
    std::stringstream document;
    document << std::ifstream(NTK_MEASURING_FILE).rdbuf();
    EXPECT_EQ(list.status, 0);
    EXPECT_EQ(linesOf(list.output).size(), 11u);
    for (const std::string& name : linesOf(list.output)) {
        EXPECT_TRUE(fits(help, "^  " + name + " +[A-Za-z]")) << name;
        EXPECT_TRUE(fits(document.str(), "^\\{\\{ntkbench " + name + "( [a-z0-9]+)*\\}\\}$"))
            << name;
    }
}

// Also: calls of the library succeed, and decoders restore the data, else the run fails.
TEST_F(Ntkbench, EveryComparisonPrintsATableOfFigures) {
    const std::string number = " [0-9]+\\.[0-9]{3} ";
    const std::string row = "^\\| [^|]+ \\| [a-z0-9]+ \\| [0-9]+ \\|" + number + "\\| [^|]+ \\|" +
                            number + "\\|" + number +
                            "\\| [0-9]+\\.[0-9]{3}-[0-9]+\\.[0-9]{3} \\| ([0-9]\\.[0-9]{3})? \\|$";
    struct Case {
        const char* name;
        std::size_t rows; // with the file book1, at least
        std::size_t furtherRows = 0;
    };
    // With libdeflate, deflate has one or two rows for each of its nine levels.
    const Case cases[] = {{"checksum", 8},    {"lz4", 8},      {"lzo", 5},     {"lzss", 2},
                          {"deflate", 18, 9}, {"inflate", 16}, {"bwt", 9},     {"bz2", 1},
                          {"bz2stages", 5},   {"zfp", 8},      {"handloop", 2}};
    for (const Case& c : cases) {
        std::vector<std::string> arguments = {"--markdown", "--rounds", "1", c.name};
        if (std::string(c.name) != "checksum" && std::string(c.name) != "zfp") {
            arguments.push_back("book1");
        }
        const Outcome outcome = run(arguments);
        const std::vector<std::string> lines = linesOf(outcome.output);
        EXPECT_EQ(outcome.status, 0) << c.name << ": " << outcome.errors;
        ASSERT_GE(lines.size(), 2 + c.rows) << outcome.output;
        ASSERT_LE(lines.size(), 2 + c.rows + c.furtherRows) << outcome.output;
        EXPECT_EQ(std::count(lines[1].begin(), lines[1].end(), '|'),
                  std::count(lines[0].begin(), lines[0].end(), '|'));
        for (std::size_t i = 2; i < lines.size(); ++i) {
            EXPECT_TRUE(fits(lines[i], row)) << lines[i];
        }
    }
}

TEST_F(Ntkbench, FilesAreThoseOfTheCorpusOrPaths) {
    struct Case {
        std::vector<std::string> arguments;
        std::vector<std::string> data; // of the rows, in this order
    };
    const fs::path elsewhere = m_corpus / "elsewhere";
    fs::create_directory(elsewhere);
    fs::copy(m_corpus / "pic", elsewhere / "pic2");
    const Case cases[] = {{{"bz2"}, {"book1", "pic"}},
                          {{"bz2", "elsewhere/pic2", "book1"}, {"pic2", "book1"}},
                          {{"--corpus", "elsewhere", "bz2", "pic2", "pic"}, {"pic2", "pic"}}};
    for (const Case& c : cases) {
        std::vector<std::string> arguments = {"--rounds", "1"};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const Outcome outcome = run(arguments);
        const std::vector<std::string> lines = linesOf(outcome.output);
        ASSERT_EQ(lines.size(), 2 + c.data.size()) << outcome.output << outcome.errors;
        for (std::size_t i = 0; i < c.data.size(); ++i) {
            EXPECT_NE(lines[2 + i].find(" " + c.data[i] + " "), std::string::npos) << lines[2 + i];
        }
    }
}

} // namespace
