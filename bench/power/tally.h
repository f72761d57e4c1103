// Counts over readings whose truth is known, and what is demanded of them.
#pragma once

#include "reading.h"

struct Tally {
    int cases = 0;
    int slower = 0, faster = 0;
    int withInterval = 0;
    int covered = 0;            // intervals that hold the truth
    double medianHalfWidth = 0; // of the intervals, as a share
    double medianSeconds = 0;
    double medianError = 0, largestError = 0; // of the estimates, without sign, as a share
    double lowestEstimate = 1, highestEstimate = 1;

    int neither() const { return cases - slower - faster; }
    // Right: called slower where something was added, neither where nothing was.
    int right(double added) const { return added > 0 ? slower : neither(); }
    // Wrong: called what it is not. What is left was missed.
    int wrong(double added) const { return added > 0 ? faster : slower + faster; }
};

struct Group {
    std::string method;
    double added = 0;
    bool hasNeighbour = false;
};
bool isOf(const Group& group, const Reading& reading);
// The groups that there are readings of: by method as they appear, then by what was added, then
// quiet before the neighbour.
std::vector<Group> groupsOf(const std::vector<Reading>& readings);
Tally tallyOf(const std::vector<Reading>& readings, const Group& group);

// A demand, what came of it, and whether it is met. Nothing when there is no reading to judge.
struct Target {
    std::string what;
    std::string found;
    bool isMet = false;
};
std::vector<Target> targetsOf(const Results& results);
