#pragma once

#include <optional>
#include <string>
#include <vector>

#include "values.h"

// What a comparison is made of and what came out: plain data. The run fills it, the reports read
// it.
namespace compare {

enum class Side { base, changed }; // users read "base" and "new"

template <class T> struct Both {
    T base{};
    T changed{};
    T& operator[](Side side) { return side == Side::base ? base : changed; }
    const T& operator[](Side side) const { return side == Side::base ? base : changed; }
};

using common::NamedValue;
using common::NamedValues;
using common::Value;

// A few milliseconds of one side: an untimed call, then spans of timed calls.
struct Turn {
    double clocks = 0;   // of the time-stamp counter; one call of the quickest span
    long long calls = 0; // timed ones
    // What disturbed it. Evidence: a disturbed turn counts like any other.
    long involuntarySwitches = 0; // the processor was taken away
    long migrations = 0;          // it went on on another processor
    long minorFaults = 0;         // pages that were not there yet
    long majorFaults = 0;         // pages that came from a disk

    bool isDisturbed() const { return involuntarySwitches || migrations || majorFaults; }
};

// Two turns side by side.
struct Round {
    bool baseFirst = true; // drawn
    Both<Turn> turns;
};

// The rounds that one pair of processes gave for a case.
struct Start {
    int pass = 0; // from 1
    std::vector<Round> rounds;
};

// What a side says of a case besides its clocks.
struct Outcome {
    int status = 0; // of the library, from the untimed calls: the worst
    std::string unit;
    double unitsPerCall = 1;
    NamedValues values; // "Length", "Ratio" ...
};

// Why a case, or the rest of it, was not measured.
struct Failure {
    Side side = Side::base;
    std::string what; // "killed by SIGSEGV in a turn", "ntksX is missing in libntkdc.so.12 (path)"
    std::string detail; // the last lines that the worker wrote; may be empty
};

// Why no more was measured.
enum class Stop {
    precise,     // narrow enough, and the verdict is clear
    time,        // its own time was used up
    budget,      // that of the whole run was
    interrupted, // by the user
    failed,      // see failures
    passedOver,  // the tests themselves do not measure it: a file shorter than the length, say
};

struct Case {
    std::string function;
    Both<NamedValues> parameters; // differ where the keys of the sides do
    Both<Outcome> outcome;
    std::vector<Start> starts; // without the empty ones
    std::vector<Failure> failures;
    Stop stop = Stop::time;
    std::string passedOver; // why, in the tests' words
    double seconds = 0;     // inside turns
};

// Announced by one side alone.
struct Unpaired {
    Side side = Side::base;
    std::string function;
    NamedValues parameters;
};

struct SideFacts {
    std::string directory;          // as given; "own" for the own build
    std::vector<std::string> keys;  // of ntkperf, those for both sides first
    std::vector<std::string> files; // of the measured library, as the loader found them
    std::string version;            // of the library, as it says
};

struct Settings {
    double precision = 0.005; // half width that is narrow enough, as a ratio
    double tolerance = 0.01;  // differences up to this do not matter, as a ratio
    double secondsPerCase = 1;
    double budgetSeconds = 0;    // 0: none
    double patienceSeconds = 30; // without an answer, before a worker is given up
    double hurrySeconds = 1;     // the same once the user wants the end
    double alpha = 0.05;         // 1 - confidence of the intervals and of all verdicts together
    int cpu = -1;                // -1: the quietest one
    unsigned long long seed = 0;
};

struct Comparison {
    Settings settings;
    Both<SideFacts> sides;
    std::string machine; // processor, as the system names it
    int cpu = -1;        // that both sides were pinned to
    std::string started; // RFC 3339
    double wallSeconds = 0;
    int passes = 0;         // pairs of processes that were started to measure
    bool isComplete = true; // false: interrupted, or out of budget
    std::vector<int> looks; // passes after which it is decided what is done, as planned
    std::vector<Case> cases;
    std::vector<Unpaired> unpaired;
    Both<std::vector<std::string>> remarks; // keys and settings that had no effect
};

} // namespace compare
