#pragma once

#include <optional>

#include "psrunwatch.h"
#include "pstestformat.h"

// What the processes before this one did in a run that several processes share: the file that the
// watcher hands on.
struct psPastRun {
    struct Answer {
        psString name, text;
    };
    struct Asked {
        psString function;
        psStringList names; // of its parameters
    };
    struct Result {
        int code = 0;       // -1: refused by the settings file
        int tableLines = 0; // behind this test
        psDisturbances figures;
    };

    time_t begun = 0;
    psList<Answer> answers; // to the questions before the first test
    psList<Asked> asked;
    psStringList remarks; // about parameters of tests
    psList<Result> results;
    bool isSummaryWritten = false;
    std::optional<psLostTest> lost;
    psDisturbances figures; // of the measurements before it ended

    void take(const psString& line);
};

// The fields between the tabs; n counts from 0, one that is missing is empty.
psString psField(const psStringList& fields, int n);
psStringList psFields(const psString& line);
