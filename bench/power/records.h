// Results as lines of JSON, and what the programs that are compared write.
#pragma once

#include <map>
#include <string>

#include "reading.h"

std::string lineOf(const Reading& reading);
std::string lineOf(const TurnShare& share);
std::string lineOfRemark(const std::string& remark);
// Adds what the line holds. Throws a std::runtime_error when it is no such line.
void addLine(const std::string& line, Results& results);

// What is known of a subject before it is compared.
struct Known {
    std::string function;
    double clocks = 0; // of a call, the quickest
    struct Level {
        double added = 0;       // intended
        long links = 0;         // of the chain
        double chainClocks = 0; // that it adds to a call
        // The ratio of a call with the chain to one without, when both alternate in one process:
        // measured, and as the chain's clocks give it. A control.
        double measured = 1, expected = 1;
    };
    std::vector<Level> levels;

    const Level* find(double added) const;
};
using KnownSubjects = std::map<std::string, Known>; // by subject
// From the lines that bench_plain writes when it calibrates.
KnownSubjects knownOf(const std::string& lines);

// What every reading of a run has in common.
struct RunFacts {
    double added = 0;
    bool hasNeighbour = false;
};
// From ntkcompare's JSON. The true value is that of the run: the clocks of the chain over those
// that the middle one of the base's turns has found for a call. Throws when a case is not measured,
// or is none of the known ones.
std::vector<Reading> readingsOfCompare(const std::string& json, const KnownSubjects& known,
                                       const RunFacts& run);
TurnShare turnShareOf(const std::string& json, bool hasNeighbour);
// From the lines that bench_plain writes for the two sides. The true value is that of the quickest
// call.
std::vector<Reading> readingsOfPlain(const std::string& base, const std::string& changed,
                                     const KnownSubjects& known, const RunFacts& run);
// How well the control of the true values came out; "" when there is none.
std::string remarkOnControl(const KnownSubjects& known);
