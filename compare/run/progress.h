#pragma once

#include "comparison.h"
#include "looks.h"
#include "runner.h"

// How far a run is, from what was measured so far.
namespace compare {

// Work is counted in seconds inside turns as they are planned.
struct Work {
    double done = 0;
    double left = 0;
};

// The work that is left to `cases` undecided cases from that one on which is `visited`-th (from 0)
// in this pass, if none of them is decided early.
double workLeft(const Looks& looks, int pass, int visited, int cases, double secondsPerCase);

// What is left takes as long a planned second as what is done. The share takes account of cases
// that were done early. `budgetLeft` is an upper limit.
Progress progressOf(const std::string& caseName, const Work& work, double secondsSoFar,
                    double budgetLeft);

// "ntksEncodeLZ4_8u CodeLength=16384 CodeFile=book1"
std::string caseName(const Case& named);

} // namespace compare
