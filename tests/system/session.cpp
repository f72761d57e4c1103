#include "session.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

// A shell has a command in its background ignore the first two of these, and nohup the third; the
// programs that are tested would, too.
[[maybe_unused]] const bool g_hearsSignals = [] {
    for (const int signal : {SIGINT, SIGQUIT, SIGHUP}) {
        std::signal(signal, SIG_DFL);
    }
    return true;
}();

Texts cellsOf(const std::string& line) {
    Texts cells(1);
    for (const char c : line) {
        if (c == ',') {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    return cells;
}

} // namespace

const std::string& corpusDirectory() {
    static const TemporaryDirectory directory;
    static const Outcome made =
        runCommand({.program = NTK_CORPUS_FILE, .arguments = {directory.path()}, .input = ""});
    if (made.status != 0) {
        throw std::runtime_error("no corpus: " + made.output + made.errors);
    }
    return directory.path();
}

Texts operator+(Texts words, const Texts& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

Outcome SystemTest::run(const Texts& keys, Command how) const {
    how.arguments = keys;
    if (how.program.empty()) {
        how.program = NTK_PERF_FILE;
        how.arguments.push_back("-l" + directory());
    }
    if (how.directory == ".") {
        how.directory = directory();
    }
    return runCommand(how);
}

Outcome SystemTest::runWell(const Texts& keys, const Command& how) const {
    return expectWell(run(keys, how));
}

Outcome SystemTest::expectWell(const Outcome& outcome) {
    EXPECT_EQ(outcome.status, 0) << "signal " << outcome.signal;
    EXPECT_EQ(outcome.errors, "");
    return outcome;
}

Outcome SystemTest::runWithDeeds(const std::string& deeds, const Texts& keys, Command how) const {
    how.environment =
        how.environment + Texts{"LD_LIBRARY_PATH=" NTK_DEEDS_DIRECTORY, "NTK_DEEDS=" + deeds};
    how.directory = corpusDirectory();
    return run(keys, how);
}

std::string SystemTest::result(const std::string& function) const {
    return summaryRecords(text("sum.csv"))[function]["Result"];
}

void SystemTest::makeCommaLocale() const {
    write("comma.src", "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3\n"
                       "END LC_NUMERIC\n");
    runCommand({.program = "/usr/bin/localedef",
                .arguments = {"-c", "-i", path("comma.src"), path("comma")},
                .input = ""});
}

Texts SystemTest::listedFunctions() const {
    const std::string output = runWell({"-e-", "-fntks", "-s-"}).output;
    return linesOf(output.substr(output.rfind("=\n") + 2));
}

Table::Table(const std::string& text) {
    for (const std::string& line : linesOf(text)) {
        const Texts cells = cellsOf(line);
        if (!names.empty()) {
            rows.push_back(cells);
        } else if (cells.front() == "Function") {
            names = cells;
        } else {
            titles.push_back(cells);
        }
    }
}

std::string Table::cell(const Texts& row, const std::string& column) const {
    const auto at = std::find(names.begin(), names.end(), column) - names.begin();
    return static_cast<size_t>(at) < row.size() ? row[static_cast<size_t>(at)] : "no such cell";
}

std::set<std::string> Table::column(const std::string& name) const {
    std::set<std::string> values;
    for (const Texts& row : rows) {
        values.insert(cell(row, name));
    }
    return values;
}

std::map<std::string, std::map<std::string, std::string>> summaryRecords(const std::string& text) {
    std::map<std::string, std::map<std::string, std::string>> records;
    Texts names;
    for (const std::string& line : linesOf(text)) {
        const Texts cells = cellsOf(line);
        if (cells.front() == "Function") {
            names = cells;
        } else if (cells.size() == names.size()) {
            for (size_t i = 0; i < cells.size(); ++i) {
                records[cells.front()][names[i]] = cells[i];
            }
        }
    }
    return records;
}

int closingCount(const std::string& console, const std::string& label) {
    const size_t at = console.find(" " + label, console.find("PS Summary"));
    const size_t colon = console.find(": ", at);
    return colon == std::string::npos ? -1 : std::stoi(console.substr(colon + 2));
}
