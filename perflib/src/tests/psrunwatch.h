#pragma once

#include <ctime>

#include "psresult.h"
#include "psstring.h"

class psTest;
class psTestList;

// Somebody outside the process who wants to know where the run is: what cannot be survived in here
// then costs one test, and another process goes on behind it.
class psRunWatch {
public:
    virtual ~psRunWatch() = default;
    // For each test that is to be run, in order. True: an earlier process of this run has run it,
    // or ended in it, and it has been counted.
    virtual bool wasRun(psTest& test, psTestList& list) = 0;
    virtual void testBegins(const psTest& test) = 0;
    virtual void testEnds(psResult result, bool refused) = 0;
    // Where the test is: its title has been written ...
    virtual void starts(psTest& test) = 0;
    virtual void parametersRead(psTest& test) = 0;
    // ... and then in each combination before the data are prepared, before the first measured
    // call, before the data are released.
    virtual void prepares(psTest& test) = 0;
    virtual void calls(psTest& test) = 0;
    virtual void releases(psTest& test) = 0;
};

extern psRunWatch* g_runWatch; // null, the usual case: nobody

// A test in which an earlier process of this run ended.
struct psLostTest {
    psString function;
    time_t startTime = 0;
    psString label;           // the step it was in
    psString combination;     // "CodeLength=16384 CodeFile=book1"; empty: before the first one
    psStringList cells;       // the combination's of the table; empty when it was not prepared
    bool hasMeasured = false; // a combination before this one
    long long clocksInCalls = 0;
    psString word;      // what ended the process: "SIGABRT", "no answer"
    psString message;   // the same for the log
    psString lastError; // the last line on standard error; empty: none
};
