// The program under test, in a directory of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "../scratch.h"
#include "../texts.h"
#include "process.h"

using Texts = std::vector<std::string>;

// Batch mode with one call per combination: what is wanted here is what a run writes, not how fast
// anything is. The processor's frequency is not needed then, which takes seconds to read.
inline const Texts quick = {"-B", "-dMethod=Manual", "-dNumLoops=1"};
inline const std::string crc = "-f=ntksCRC32_8u"; // a test without files: five lengths

// Stand-ins of the real sizes, made when first asked for. The program runs there for tests of
// files.
const std::string& corpusDirectory();

Texts operator+(Texts words, const Texts& more);

class SystemTest : public testing::Test {
protected:
    const std::string& directory() const { return m_directory.path(); }
    std::string path(const std::string& name) const { return m_directory.path(name); }
    std::string text(const std::string& name) const { return readFile(path(name)); }
    void write(const std::string& name, const std::string& text) const {
        writeFile(path(name), text);
    }

    // Runs the program with the keys, output files going to directory() by "-l" unless how says
    // which program to run; in directory() unless it says where.
    Outcome run(const Texts& keys, Command how = {}) const;
    // The same; and it must end well, saying nothing on the error output.
    Outcome runWell(const Texts& keys, const Command& how = {}) const;
    static Outcome expectWell(const Outcome& outcome);
    // On the corpus, with a library in place of the own one that does deeds (deeds/deeds.cpp).
    Outcome runWithDeeds(const std::string& deeds, const Texts& keys, Command how = {}) const;
    // Of a function in the summary table sum.csv.
    std::string result(const std::string& function) const;
    // The file of a locale "comma", in whose numbers 1,234.5 is 1.234,5; for LOCPATH.
    void makeCommaLocale() const;
    // The measured functions in the order of their registration, as "-e-" lists them.
    Texts listedFunctions() const;

private:
    const TemporaryDirectory m_directory;
};

// A performance table read back as a user does: the title lines are skipped, the name line names
// the columns.
struct Table {
    explicit Table(const std::string& text);
    std::string cell(const Texts& row, const std::string& column) const;
    std::set<std::string> column(const std::string& name) const; // its values

    std::vector<Texts> titles, rows;
    Texts names;
};

// The records of a summary table by function name, each a map from column to cell.
std::map<std::string, std::map<std::string, std::string>> summaryRecords(const std::string& text);

// The value of a line " <label> : <value>" of the closing summary, -1 when it is not there.
int closingCount(const std::string& console, const std::string& label);
