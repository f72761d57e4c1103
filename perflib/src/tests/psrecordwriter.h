#pragma once

#include <ctime>

#include "psbase.h"
#include "psresult.h"

class psTest;
class psTestList;
struct psMeasurement;

// What a run is about to do.
struct psRunPlan {
    time_t start = 0;
    psStringList keys;        // of the command line
    psStringList inputFiles;  // that the common parameters name
    int tests = 0;            // to be run
    bool isContinued = false; // an earlier process of the run has told all of this
};

// An output format of its own beside log and tables: a file with a class derived from this, and
// one psRegRecordWriter. Nothing is called while anything is timed.
class psRecordWriter {
public:
    virtual ~psRecordWriter() = default;
    // Once for each combination that was measured, also when that failed; after its line of the
    // log and of the table.
    virtual void write(const psMeasurement& record) = 0;
    // Before the first test, and behind the closing summary.
    virtual void begin(const psRunPlan&) {}
    virtual void end(const psTestList&) {}
    // Around each test that is run; of one in which an earlier process of the run ended, both when
    // that is known.
    virtual void testBegins(const psTest&) {}
    virtual void testEnds(const psTest&, psResult, double /*seconds*/) {}
};

// Calls tell(writer) for each registered one.
template <class Tell> void psTellRecordWriters(Tell tell) {
    if (g_pRecordWriters) {
        for (psRecordWriter* const writer : *g_pRecordWriters) {
            tell(*writer);
        }
    }
}
