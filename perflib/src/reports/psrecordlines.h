#pragma once

#include "psmeasurement.h"
#include "psrunfacts.h"

// The lines of a records file, each one JSON object with its line end: docs/records.schema.json
// says what they hold. Bytes that are no UTF-8 are replaced, numbers that are none are null.

// Above 1 when a reader of the versions before would misunderstand what it finds. A new member or a
// new kind of line is none of that: readers pass over what they do not know.
constexpr int psRecordsVersion = 1;

struct psTestFacts {
    psString function, test, source;
    double seconds = 0;
    double secondsInCalls = 0; // below 0: not known
    psResult result = PS_UNDEFINED;
    psString message; // what the log said of it as errors and warnings
};

struct psEndFacts {
    int tests = 0, failed = 0;
    bool isComplete = true;
    double seconds = 0;
    double secondsInCalls = 0; // as of a test
    int ticksMHz = 0;          // known now, if it was not before the first test
};

psString psRunLine(const psRunFacts& run);
psString psInputLine(const psInputFacts& input); // of a file that the line of the run lacks
psString psMeasurementLine(const psMeasurement& measurement);
psString psTestLine(const psTestFacts& test);
psString psEndLine(const psEndFacts& end);

// The text as a message: without the last line end, of a very long one the first lines.
psString psMessageText(const psString& text);

// "2026-11-22T03:36:15+01:00", in local time.
psString psTimeText(time_t time);
