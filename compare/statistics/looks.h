#pragma once

#include <vector>

// When is looked at the cases, and what each look may claim. The looks are fixed before the first
// pass (but for the number of cases). Each gets an equal part of the chance of error (Bonferroni),
// so that what is claimed at any of them holds together, whenever a case stops.
namespace compare {

struct Looks {
    std::vector<int> passes;  // that are made before each look
    double confidence = 0.95; // of an interval of one look, so that all of them hold with 1 - alpha

    int last() const { return passes.back(); }
};

// The first look comes when a clear difference of one case can be told beside so many others: the
// smallest p-value that n passes can give is 2/2^n.
Looks planLooks(int cases, double alpha);

// The part of a case's time for one pass: all get the same, so that each start says as much as
// another.
double secondsOfPass(const Looks& looks, double secondsPerCase);

} // namespace compare
