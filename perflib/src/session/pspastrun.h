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
        psRunFigures figures;
    };

    time_t begun = 0;
    long long begunInstant = 0; // the same moment, see psTestList::setStartInstant
    psList<Answer> answers;     // to the questions before the first test
    psList<Asked> asked;
    psStringList remarks; // about parameters of tests
    psList<Result> results;
    bool isSummaryWritten = false;
    std::optional<psLostTest> lost;
    psRunFigures figures; // of the measurements before it ended

    void take(const psString& line);

private:
    long long clocksOfResults() const;
};

// The fields between the tabs; n counts from 0, one that is missing is empty.
psString psField(const psStringList& fields, int n);
psStringList psFields(const psString& line);
