#pragma once

#include "psresult.h"
#include "psvalue.h"

// What the timing engine knows of a measurement. Clocks are those of the time-stamp counter.
struct psTimes {
    psString method;          // as the user chooses it: "Auto", "Manual" ...
    double clocksPerCall = 0; // the answer; 0: there is none
    int calls = 0;            // of the run that gave it; with a loop function its loops
    long long batches = 0;    // timed spans of the measurement
    double spread = 0;        // middle span over the smallest, less 1; 0 for a single one
    int switches = 0;         // of the processor to another process, while it lasted
    double accuracy = 0;      // relative spread of the runs that were compared; 0: none were
    bool hasAccuracy = false; // whether the method judges it
    psString remark;          // "nLps=4096 acc=7.3%"
};

// The record of one measurement: a test measured with one combination of its parameters. The
// engine gives the times, the test the rest; the log, the tables and every other format only write
// what is here.
struct psMeasurement {
    psString function;
    psString source; // the file of the test, without ending
    psString types;  // of the function's operands, "8u16u"; empty for tests without a primitive
    // What the parameters stand on, in the order of their loops: the name of the combination.
    psNamedValues parameters;
    // What the test adds under the names of table columns: "Length" really measured, "Ratio" ...
    psNamedValues values;

    psTimes times;
    double unitsPerCall = 1; // bytes, elements ...
    psString unit;           // "e"
    double flopsPerCall = 0; // floating-point operations; 0: not a question of this function
    psResult result = PS_UNDEFINED;
    psString comment;        // cache mode and the engine's remark
    bool deprecated = false; // a parameter value is: no figures are written
    bool hot = false;        // one of the functions that users call most

    // A failed call has no clocks worth telling.
    bool isMeasured() const { return !psIsFail(result) && !deprecated; }
    double clocksPerUnit() const { return times.clocksPerCall / unitsPerCall; }
    // What disturbed the figures: the middle span is far from the smallest; the process lost its
    // processor meanwhile.
    bool isSpread() const;
    bool isSwitchedOut() const { return isMeasured() && times.switches > 0; }
    // "CodeLength=16384 CodeFile=book1": equal texts are the same measurement of a function.
    psString combination() const;
};
