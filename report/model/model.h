#pragma once

#include <optional>
#include <string>
#include <vector>

#include "values.h"

// What was measured, as the readers find it in files and the writers put it into others: plain
// data.
namespace report {

using common::NamedValue;
using common::NamedValues;
using common::Value;

struct LibraryFacts {
    std::string name, version;
    std::string date;               // of its build
    std::vector<std::string> files; // as the loader found them
};

struct CorpusFile {
    std::string name;
    long long bytes = 0;
    std::string checksum; // CRC-32, 8 hexadecimal digits
};

// Where and with what a run was measured. Empty or 0: the file does not say.
struct Facts {
    std::string processor;
    int processors = 0;
    double ticksMHz = 0; // of the time-stamp counter: clocks are its ticks
    std::string system, computer;
    std::string started; // RFC 3339, of tables as they have it
    std::vector<LibraryFacts> libraries;
    std::vector<std::string> keys;
    std::vector<CorpusFile> corpus;
    // Of runs on many machines: what the user calls this kind of machine and this build.
    std::string kind, build;
};

// One combination of one function in one run.
struct Measurement {
    std::string function;
    std::string types;                   // of the operands, "8u16u"
    NamedValues parameters;              // name the combination; of a table its columns
    NamedValues values;                  // what the test tells beside the clocks: "Length", "Ratio"
    std::optional<double> clocksPerUnit; // nothing: it failed, or there is nothing to tell
    std::string unit;                    // "e"
    double unitsPerCall = 0;             // 0: the file does not say
    long long calls = 0;                 // timed; 0: the file does not say
    std::optional<double> spread;        // within the measurement, as a ratio
    std::string result = "OK";           // the table's word
    std::string comment;
    bool isDeprecated = false;
    bool isHot = false;
};

// What became of a test as a whole. Tables do not have it.
struct TestResult {
    std::string function, test;
    std::string result;
    std::string message; // of a failure, in the log's words
    double seconds = 0;
};

struct Run {
    std::string file; // that it was read from
    Facts facts;
    bool isExact = false;             // figures in full precision, not the three digits of a table
    bool isComplete = true;           // as far as the file tells
    std::vector<std::string> columns; // of a table: those that name its combinations
    std::vector<Measurement> measurements;
    std::vector<TestResult> tests;
};

// What a case gave in one run.
struct Sample {
    int run = 0;         // index in Report::runs
    int measurement = 0; // index in its measurements
    double clocksPerUnit = 0;
};

// The same combination of the same function, in all runs of a group.
struct Case {
    std::string function, types, unit;
    std::string family; // "LZ4", "Deflate", "BZ2" ...
    enum class Kind { other, encoder, decoder } kind = Kind::other;
    NamedValues parameters;       // name it within its function
    std::string file;             // of the corpus; empty: none
    std::optional<double> length; // of the data in bytes
    std::optional<double> ratio;  // of what goes in and out of a call
    // Bytes of uncompressed data that a unit stands for, where that is known.
    std::optional<double> bytesPerUnit;
    std::vector<Sample> samples; // in the order of the runs; empty: it failed in all
    double smallest = 0, median = 0, largest = 0; // clocks a unit; 0 without samples
    // Middle half of several samples, or the spread within a single measurement, over the median.
    std::optional<double> spread;
    std::string result = "OK"; // the worst
    std::string comment;       // of the result, or of the first sample
};

// Runs that can be put together: one machine, the same builds, the same keys. Figures of different
// groups are never averaged.
struct Group {
    std::string label;     // what tells it from the other groups, "12.0.1 (-TSSE42)"; one: empty
    int series = 0;        // the same for groups that only the build of the library tells apart
    std::vector<int> runs; // indices in Report::runs
    std::vector<Case> cases;
};

// A comparison of two builds, as ntkcompare has written it.
struct ComparedCase {
    std::string function;
    std::string parameters; // "CodeLength=16384 CodeFile=bib"
    std::string verdict;    // "slower", "faster", "same", "open", or why there is none
    bool isBeyondTolerance = false;
    // new / base; nothing: none, or an interval without that end
    std::optional<double> ratio, low, high;
    std::optional<double> baseClocksPerUnit, newClocksPerUnit;
    std::string failure; // in its words
};

struct Comparison {
    std::string file;
    std::string started, machine;
    std::string base, changed; // the sides, each with its version and keys
    double tolerance = 0;      // as a ratio
    double confidence = 0.95;
    std::optional<double> medianHalfWidth; // of the intervals: the noise floor, as a ratio
    // Over all measured cases, new / base as in a case.
    std::optional<double> ratio, low, high;
    bool isComplete = true;
    std::vector<ComparedCase> cases;
};

struct Report {
    std::vector<Run> runs;
    std::vector<Group> groups;
    std::vector<Comparison> comparisons;
    std::vector<std::string> remarks; // what could not be read, a sentence each
};

} // namespace report
